// A fault at each system call with which a cleanup is recorded, one after the other: the file and
// what is kept of it stay whole, and the next record saves everything.
#include "app/state/HistoryStore.h"
#include "core/platform/Directory.h"
#include "core/platform/FileContents.h"
#include "tests/faults/SystemCalls.h"
#include "tests/support/TempHome.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <limits>

namespace tidewright {
namespace {

using test::Fault;
using test::SystemCalls;
using test::TempHome;
using testing::ElementsAre;

constexpr std::array errors{EIO, ENOSPC, EINTR};
constexpr std::size_t forEver = std::numeric_limits<std::size_t>::max() / 2;
constexpr Int64 most = 1'000'000;
const std::string garbage = "no history";

CleanSummary numbered(Int64 number) {
    CleanSummary summary;
    summary.outcomes = {
        {.itemID = "a", .title = "a", .status = CleanOutcome::Status::cleaned(), .bytes = number}};
    return summary;
}

std::vector<Int64> numbersOf(const HistoryStore& store) {
    std::vector<Int64> numbers;
    for (const HistoryEntry& entry : store.entries())
        numbers.push_back(entry.estimatedFreed);
    return numbers;
}

/// A store that has an entry in memory and in a file, or next to a file of garbage.
class Scene {
public:
    explicit Scene(bool isGarbage) : m_isGarbage(isGarbage) {
        store.record(numbered(1));
        if (isGarbage)
            home.file("history.json", garbage);
        m_before = text("history.json");
    }

    /// What is wrong with the files, whatever happened; empty when nothing is.
    std::string complaint() const {
        const std::string now = text("history.json");
        if (m_isGarbage && now != garbage && text("history.json.unreadable") != garbage)
            return "the garbage is gone";
        if (now == m_before || (m_isGarbage && now == "none"))
            return {};
        return numbersOnDisk() == std::vector<Int64>{1, 2} ? "" : "neither old nor new: " + now;
    }

    bool isSaved() const { return numbersOnDisk() == std::vector<Int64>{1, 2}; }
    std::vector<Int64> numbersOnDisk() const { return numbersOf(HistoryStore(home.url())); }
    std::string text(const char* name) const {
        return readFile(home.path(name), most).value_or("none");
    }
    std::size_t fileCount() const { return readDirectory(home.url())->size(); }

    TempHome home;
    HistoryStore store{home.url()};

private:
    bool m_isGarbage;
    std::string m_before;
};

std::map<std::string, std::size_t> undisturbedCounts(bool isGarbage) {
    Scene scene(isGarbage);
    const SystemCalls watch;
    scene.store.record(numbered(2));
    return watch.counts();
}

class HistoryStoreFaultTest : public testing::TestWithParam<bool> {
protected:
    void tryFault(const Fault& fault) const {
        SCOPED_TRACE(fmt::format("{} number {}{} fails with {}", fault.call, fault.first,
                                 fault.count == 1 ? "" : " and all after it",
                                 std::strerror(fault.error)));
        Scene scene(GetParam());
        testing::internal::CaptureStderr();
        {
            const SystemCalls watch(fault);
            scene.store.record(numbered(2));
            EXPECT_TRUE(watch.hasFailed());
        }
        const std::string complaint = scene.complaint();
        const bool isSaved = scene.isSaved();
        const std::string log = testing::internal::GetCapturedStderr();
        EXPECT_THAT(numbersOf(scene.store), ElementsAre(1, 2));
        EXPECT_EQ(complaint, "");
        // Where standard error itself could not be written to, there is nothing to read.
        if (!isSaved && fault.call != "write") {
            EXPECT_THAT(log, testing::HasSubstr("Could not save history: "));
        }
        const std::size_t allFiles = GetParam() ? 3 : 2; // with the lock
        if (fault.call != "unlink") {
            EXPECT_LE(scene.fileCount(), allFiles) << "nothing is left behind";
        }
        scene.store.record(numbered(3));
        EXPECT_THAT(scene.numbersOnDisk(), ElementsAre(1, 2, 3));
        if (GetParam()) {
            EXPECT_EQ(scene.text("history.json.unreadable"), garbage);
        }
    }
};

TEST_P(HistoryStoreFaultTest, LosesNothing) {
    undisturbedCounts(GetParam()); // what is looked up once in a process is no part of it
    for (const auto& [call, count] : undisturbedCounts(GetParam()))
        for (std::size_t number = 1; number <= count && !HasFailure(); ++number)
            for (const int error : errors) {
                tryFault({call, number, 1, error});
                if (error != EINTR) // which may be tried again for ever
                    tryFault({call, number, forEver, error});
            }
}

TEST_P(HistoryStoreFaultTest, ABrokenDiskIsNotTakenForASavedFile) {
    for (const char* call : {"write", "fsync", "rename"}) {
        Scene scene(GetParam());
        const std::string before = scene.text("history.json");
        testing::internal::CaptureStderr();
        {
            const SystemCalls watch({call, 1, forEver, EIO});
            scene.store.record(numbered(2));
        }
        const bool isSaved = scene.isSaved();
        testing::internal::GetCapturedStderr();
        EXPECT_FALSE(isSaved) << call;
        if (!GetParam()) {
            EXPECT_EQ(scene.text("history.json"), before) << call;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EachFile, HistoryStoreFaultTest, testing::Bool(), [](const auto& each) {
    return std::string(each.param ? "WithGarbage" : "WithAHistory");
});

TEST(HistoryStoreFaultCountTest, TheChiefCallsAreMade) {
    const auto counts = undisturbedCounts(true);
    for (const char* call : {"open", "write", "fsync", "rename"})
        EXPECT_GT(counts.at(call), 0U) << call;
}

} // namespace
} // namespace tidewright
