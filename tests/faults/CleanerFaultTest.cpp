// A fault at each system call of removal, Trash and log, one after the other: none is reported as a
// success, none stops the other items, and nothing outside is touched.
#include "core/cleaning/AuditLog.h"
#include "core/cleaning/Cleaner.h"
#include "core/platform/Directory.h"
#include "core/platform/FileContents.h"
#include "core/support/Json.h"
#include "core/support/Text.h"
#include "tests/faults/SystemCalls.h"
#include "tests/support/TempHome.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace tidewright {
namespace {

using test::Fault;
using test::SystemCalls;
using test::TempHome;

constexpr std::array errors{EIO,    EACCES, EPERM,     ENOSPC, EROFS,
                            EMFILE, EBUSY,  ENOTEMPTY, ESTALE, EINTR};
constexpr std::size_t forEver = std::numeric_limits<std::size_t>::max() / 2;

/// A home with a few items of every shape, and a canary that links lead to.
class Scene {
public:
    Scene() {
        home.file("canary/inside/kept", "alive");
        home.setMode("canary/inside/kept", 0400);
        home.file("cache/tree/a/1", "x");
        home.file("cache/tree/a/2", "x");
        home.file("cache/tree/b/c/3", "x");
        home.link("cache/tree/link", "../../canary");
        home.hardLink("cache/tree/hard", "canary/inside/kept");
        home.file("cache/single", "x");
        home.link("cache/link", "../canary/inside");
        home.file("downloads/old.dmg", "disk image");
        home.file("downloads/folder/inside", "archive");
        home.folder("logs");
        items = {item("tree", CleanMethod::remove(), {"cache/tree"}),
                 item("two", CleanMethod::remove(), {"cache/single", "cache/link"}),
                 item("image", CleanMethod::trash(), {"downloads/old.dmg"}),
                 item("folder", CleanMethod::trash(), {"downloads/folder"})};
        m_canary = snapshotOfCanary();
    }

    std::vector<CleanOutcome> clean() const {
        std::vector<CleanOutcome> outcomes;
        AuditLog log(home.path("logs"), currentDate());
        for (const ScanItem& each : items) {
            outcomes.push_back(m_cleaner.execute(each, {}));
            log.record(each, outcomes.back());
        }
        return outcomes;
    }

    bool isCanaryWhole() const { return snapshotOfCanary() == m_canary; }

    /// What is wrong with these outcomes, given what is really there; empty when nothing is.
    std::string complaint(const std::vector<CleanOutcome>& outcomes) const {
        if (!isCanaryWhole())
            return "the canary was touched";
        if (outcomes.size() != items.size())
            return "an item has no outcome";
        for (std::size_t i = 0; i < items.size(); ++i)
            for (const URL& url : items[i].urls)
                if (outcomes[i].status.isSuccess() && fileInfo(url, Links::dontFollow))
                    return items[i].title + " is there although it was reported as cleaned";
        for (std::size_t i = 2; i < items.size(); ++i) {
            const bool isThere = fileInfo(items[i].urls[0], Links::dontFollow).has_value();
            if (!outcomes[i].status.isSuccess() && !isThere)
                return items[i].title + " is gone although it could not be moved to the Trash";
        }
        return complaintAboutTrash();
    }

    /// What is wrong with the log's lines; empty when nothing is.
    std::string complaintAboutLog() const {
        const auto logs = readDirectory(home.path("logs"));
        for (const DirectoryEntry& entry : *logs) {
            const std::string text =
                readFile(home.path("logs").appending(entry.name), 1'000'000).value();
            if (!text.empty() && text.back() != '\n')
                return "a line has no end";
            for (const std::string& line : nonEmptyLines(text))
                if (!parseJson(line))
                    return "no whole line: " + line;
        }
        return {};
    }

    TempHome home;
    std::vector<ScanItem> items;

private:
    ScanItem item(const std::string& title,
                  const CleanMethod& method,
                  const std::vector<std::string>& relativePaths) const {
        ScanItem::Parts parts{.ruleID = "test.rule",
                              .title = title,
                              .decision = Decision::clean,
                              .method = method,
                              .idSuffix = title};
        for (const std::string& path : relativePaths)
            parts.urls.push_back(home.path(path));
        return ScanItem::make(std::move(parts));
    }

    /// Without the number of links, which falls when the other name goes.
    std::string snapshotOfCanary() const {
        const auto info = fileInfo(home.path("canary/inside/kept"), Links::dontFollow);
        if (!info)
            return "gone";
        return fmt::format("{} {}",
                           readFile(home.path("canary/inside/kept"), 1000).value_or("unreadable"),
                           info->modified.time_since_epoch().count());
    }

    /// Each file in the Trash has its info, and each info its file.
    std::string complaintAboutTrash() const {
        const URL trash = home.path(".local/share/Trash");
        const auto files = readDirectory(trash.appending("files"));
        const auto infos = readDirectory(trash.appending("info"));
        if (!files || !infos)
            return {};
        for (const DirectoryEntry& file : *files) {
            const auto info = readText(trash.appending("info").appending(file.name + ".trashinfo"));
            if (!info || !info->starts_with("[Trash Info]\nPath=/") || !info->ends_with("\n"))
                return file.name + " can't be restored";
        }
        if (files->size() != infos->size())
            return "an info without a file is left in the Trash";
        return {};
    }

    std::string m_canary;
    Cleaner m_cleaner{.policy = PathPolicy(home.url(), home.path("tmp"), {}, {}),
                      .runner = {},
                      .logDirectory = home.path("logs"),
                      .needed = {},
                      .home = home.url()};
};

std::string textOf(const std::vector<CleanOutcome>& outcomes) {
    std::string text;
    for (const CleanOutcome& outcome : outcomes)
        text += "  " + outcome.title + ": " + outcome.status.reason().value_or("success") + "\n";
    return text;
}

/// The home trash is found by the environment.
void useTrashOf(const Scene& scene) {
    setenv("HOME", scene.home.url().path().c_str(), 1);
    unsetenv("XDG_DATA_HOME");
}

/// How often each call is made by a cleanup that nothing disturbs.
std::map<std::string, std::size_t> undisturbedCounts() {
    { // What is looked up once in a process, time zones for instance, is no part of it.
        const Scene first;
        useTrashOf(first);
        first.clean();
    }
    const Scene scene;
    useTrashOf(scene);
    std::vector<CleanOutcome> outcomes;
    std::map<std::string, std::size_t> counts;
    {
        const SystemCalls watch;
        outcomes = scene.clean();
        counts = watch.counts();
    }
    for (const CleanOutcome& outcome : outcomes)
        EXPECT_TRUE(outcome.status.isSuccess()) << textOf(outcomes);
    EXPECT_EQ(scene.complaint(outcomes), "");
    EXPECT_EQ(scene.complaintAboutLog(), "");
    return counts;
}

class CleanerFaultTest : public testing::TestWithParam<std::string> {};

/// Whether every outcome but one is a success.
bool isOnlyOneHit(const std::vector<CleanOutcome>& outcomes) {
    return std::ranges::count_if(outcomes, [](const CleanOutcome& outcome) {
               return !outcome.status.isSuccess();
           }) <= 1;
}

/// The faults at one call: each error once, and some of them from then on for ever.
std::vector<Fault> faultsAt(const std::string& call, std::size_t number) {
    std::vector<Fault> faults;
    for (const int error : errors)
        faults.push_back({call, number, 1, error});
    for (const int error : {EIO, EACCES, EMFILE})
        faults.push_back({call, number, forEver, error});
    return faults;
}

std::string textOf(const Fault& fault) {
    return fmt::format("{} number {}{} fails with {}", fault.call, fault.first,
                       fault.count == 1 ? "" : " and all after it", std::strerror(fault.error));
}

TEST_P(CleanerFaultTest, IsNeverASuccessAndNeverStopsTheOthers) {
    const std::size_t count = undisturbedCounts().at(GetParam());
    // Of a call that is made very often, places that are spread over all of them.
    constexpr std::size_t mostPlaces = 40;
    const std::size_t stride = count / mostPlaces + 1;
    for (std::size_t number = 1; number <= count; number += stride) {
        for (const Fault& fault : faultsAt(GetParam(), number)) {
            const Scene scene;
            useTrashOf(scene);
            std::vector<CleanOutcome> outcomes;
            {
                const SystemCalls watch(fault);
                outcomes = scene.clean();
                EXPECT_TRUE(watch.hasFailed()) << textOf(fault);
            }
            EXPECT_EQ(scene.complaint(outcomes), "") << textOf(fault) << "\n" << textOf(outcomes);
            EXPECT_EQ(scene.complaintAboutLog(), "") << textOf(fault);
            if (fault.count == 1) {
                EXPECT_TRUE(isOnlyOneHit(outcomes)) << textOf(fault) << "\n" << textOf(outcomes);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EachCall,
                         CleanerFaultTest,
                         testing::ValuesIn(test::faultyCalls()),
                         [](const auto& each) { return each.param; });

TEST(CleanerFaultCountTest, TheChiefCallsAreMade) {
    const auto counts = undisturbedCounts();
    for (const char* call : {"openat2", "openat", "fdopendir", "readdir", "fstat", "fstatat",
                             "unlinkat", "renameat2", "mkdirat", "write", "readlinkat"})
        EXPECT_GT(counts.at(call), 0U) << call;
}

} // namespace
} // namespace tidewright
