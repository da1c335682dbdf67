#include "app/state/HistoryStore.h"

#include "core/platform/Directory.h"
#include "core/platform/FileContents.h"
#include "core/platform/FileLock.h"
#include "core/support/Json.h"
#include "tests/support/ForkedAnswer.h"
#include "tests/support/MountNamespace.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <QFile>
#include <QLockFile>
#include <fmt/format.h>
#include <gmock/gmock.h>

#include <signal.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <fstream>
#include <limits>
#include <random>
#include <set>

namespace tidewright {
namespace {

using test::asOrdinaryUser;
using test::TempHome;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using testing::UnorderedElementsAre;

constexpr Int64 most = 1'000'000'000;
const Date date = parseISO8601("2026-03-01T09:30:00Z").value();

// As a version of this program wrote it, and as people and other programs may write it.
const std::string oneEntry =
    R"({"id":"6B29FC40-CA47-1067-B31D-00DD010662DA","date":794050200.0,"measuredGain":5,)"
    R"("estimatedFreed":6,"movedToTrash":7,"itemCount":8,"failures":9,)"
    R"("logFile":"file:///logs/a%20b.jsonl"})";

CleanSummary summaryOf(Int64 gain, Int64 freed) {
    CleanSummary summary;
    summary.diskBefore.availableBytes = 1000;
    summary.diskAfter.availableBytes = 1000 + gain;
    summary.outcomes = {
        {.itemID = "a", .title = "a", .status = CleanOutcome::Status::cleaned(), .bytes = freed}};
    summary.date = date;
    return summary;
}

/// Told apart from others by its estimate.
CleanSummary numbered(Int64 number) { return summaryOf(0, number); }

std::vector<Int64> numbersOf(const HistoryStore& store) {
    std::vector<Int64> numbers;
    for (const HistoryEntry& entry : store.entries())
        numbers.push_back(entry.estimatedFreed);
    return numbers;
}

std::string contents(const URL& url) { return readFile(url, most).value_or("unreadable"); }

unsigned modeOf(const URL& url) {
    struct stat status = {};
    lstat(url.path().c_str(), &status);
    return status.st_mode & 07777;
}

/// What the work wrote to the log. Absent where the system has a journal, which takes it.
std::optional<std::string> logOf(const std::function<void()>& work) {
    testing::internal::CaptureStderr();
    work();
    const std::string text = testing::internal::GetCapturedStderr();
    if (fileExists(URL("/run/systemd/journal/socket")))
        return std::nullopt;
    return text;
}

class HistoryStoreTest : public testing::Test {
protected:
    TempHome home;
    URL folder = home.path("state/Tidewright");
    URL file = folder.appending("history.json");

    URL aside(const std::string& number = {}) const {
        return folder.appending("history.json.unreadable" + number);
    }
    URL write(std::string_view text) const {
        return home.file("state/Tidewright/history.json", text);
    }
    std::vector<Int64> numbersOnDisk() const { return numbersOf(HistoryStore(folder)); }
    /// Without the lock.
    std::vector<std::string> namesInFolder() const {
        std::vector<std::string> names;
        const auto entries = readDirectory(folder);
        for (const DirectoryEntry& entry : *entries)
            if (entry.name != "history.json.lock")
                names.push_back(entry.name);
        return names;
    }
    /// Expects that a store reads nothing, and says so in the log where `isTold`.
    void expectNothingRead(bool isTold) const {
        const auto log = logOf([&] {
            const HistoryStore store(folder);
            EXPECT_THAT(store.entries(), IsEmpty());
            EXPECT_EQ(store.totalFreed(), 0);
        });
        if (!log)
            return;
        if (isTold)
            EXPECT_THAT(*log, StartsWith("tidewright: [com.tidewright.app history] History "
                                         "unreadable: " +
                                         file.path()));
        else
            EXPECT_EQ(*log, "");
    }
};

// What is recorded

TEST_F(HistoryStoreTest, WithoutAFileThereIsNothingAndNothingIsMade) {
    expectNothingRead(false);
    EXPECT_FALSE(fileExists(home.path("state")));
    HistoryStore store(folder);
    EXPECT_EQ(store.fileURL(), file);
    EXPECT_FALSE(fileExists(home.path("state")));
    store.record(numbered(1));
    EXPECT_TRUE(fileExists(file));
}

TEST_F(HistoryStoreTest, TheLargerOfGainAndEstimateCounts) {
    struct Case {
        Int64 gain, estimate, freed;
    };
    for (const Case& each :
         {Case{4, 10, 10}, Case{12, 10, 12}, Case{-3, -8, -3}, Case{-9, -2, -2}, Case{0, 0, 0}}) {
        const TempHome place;
        HistoryStore store(place.url());
        store.record(summaryOf(each.gain, each.estimate));
        EXPECT_EQ(store.totalFreed(), each.freed);
    }
    HistoryStore store(folder);
    for (const Int64 gain : {4, 12, -1})
        store.record(summaryOf(gain, 10));
    EXPECT_EQ(store.totalFreed(), 32);
}

TEST_F(HistoryStoreTest, ASumThatBytesCantHoldEndsTheProgram) {
    HistoryStore store(folder);
    store.record(numbered(std::numeric_limits<Int64>::max()));
    EXPECT_EQ(store.totalFreed(), std::numeric_limits<Int64>::max());
    store.record(numbered(1));
    EXPECT_DEATH((void)store.totalFreed(), "what was freed fits into bytes");
}

TEST_F(HistoryStoreTest, OutcomesAreCountedByWhatBecameOfThem) {
    CleanSummary summary;
    using Status = CleanOutcome::Status;
    Int64 bytes = 1;
    for (const Status& status : {Status::cleaned(), Status::movedToTrash(), Status::skipped("no"),
                                 Status::failed("could not")}) {
        summary.outcomes.push_back({.itemID = "i", .title = "t", .status = status, .bytes = bytes});
        bytes *= 10;
    }
    summary.diskBefore.availableBytes = 50;
    summary.diskAfter.availableBytes = 43;
    summary.date = date;
    summary.logFile = URL("/logs/clean.jsonl");
    HistoryStore store(folder);
    store.record(summary);
    ASSERT_THAT(store.entries(), SizeIs(1));
    const HistoryEntry& entry = store.entries().front();
    EXPECT_EQ(entry.itemCount, 2);
    EXPECT_EQ(entry.failures, 1);
    EXPECT_EQ(entry.measuredGain, -7);
    EXPECT_EQ(entry.estimatedFreed, 1);
    EXPECT_EQ(entry.movedToTrash, 10);
    EXPECT_EQ(entry.date, date);
    EXPECT_EQ(entry.logFile, URL("/logs/clean.jsonl"));
    EXPECT_EQ(HistoryStore(folder).entries(), store.entries());
}

TEST_F(HistoryStoreTest, ACleanupThatDidNothingIsRecordedToo) {
    HistoryStore store(folder);
    store.record(CleanSummary{});
    ASSERT_THAT(HistoryStore(folder).entries(), SizeIs(1));
    EXPECT_EQ(HistoryStore(folder).entries().front().itemCount, 0);
}

TEST_F(HistoryStoreTest, EachEntryHasAnIdOfItsOwnInUpperCase) {
    HistoryStore store(folder);
    std::set<std::string> ids;
    for (int i = 0; i < 10; ++i)
        store.record(numbered(1));
    for (const HistoryEntry& entry : store.entries()) {
        EXPECT_TRUE(ids.insert(entry.id).second);
        EXPECT_THAT(entry.id, testing::MatchesRegex("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}"));
    }
}

TEST_F(HistoryStoreTest, ObserversAreToldOnceAndSeeTheEntry) {
    HistoryStore store(folder);
    std::vector<std::size_t> seen;
    QObject::connect(&store, &HistoryStore::entriesChanged,
                     [&] { seen.push_back(store.entries().size()); });
    store.record(numbered(1));
    HistoryStore(folder).record(numbered(2));
    store.record(numbered(3));
    EXPECT_THAT(seen, ElementsAre(1, 3));
}

// The form of the file

TEST_F(HistoryStoreTest, FileHasExactlyTheseBytes) {
    HistoryStore store(folder);
    CleanSummary summary = summaryOf(-3, 25'000'000'000);
    summary.logFile = URL("/home/ä b/logs/clean-2026-03-01T10-30-00.jsonl");
    store.record(summary);
    summary.logFile.reset();
    summary.date += std::chrono::microseconds(250'000);
    store.record(summary);
    EXPECT_EQ(contents(file),
              R"([{"id":")" + store.entries()[0].id +
                  R"(","date":794050200.0,"measuredGain":-3,"estimatedFreed":25000000000,)"
                  R"("movedToTrash":0,"itemCount":1,"failures":0,"logFile":)"
                  R"("file:///home/%C3%A4%20b/logs/clean-2026-03-01T10-30-00.jsonl"},{"id":")" +
                  store.entries()[1].id +
                  R"(","date":794050200.25,"measuredGain":-3,"estimatedFreed":25000000000,)"
                  R"("movedToTrash":0,"itemCount":1,"failures":0}])");
    EXPECT_EQ(HistoryStore(folder).entries(), store.entries());
}

TEST_F(HistoryStoreTest, FileIsRead) {
    write("[" + oneEntry + "]");
    const HistoryStore store(folder);
    const HistoryEntry expected{.id = "6B29FC40-CA47-1067-B31D-00DD010662DA",
                                .date = date,
                                .measuredGain = 5,
                                .estimatedFreed = 6,
                                .movedToTrash = 7,
                                .itemCount = 8,
                                .failures = 9,
                                .logFile = URL("/logs/a b.jsonl")};
    EXPECT_THAT(store.entries(), ElementsAre(expected));
    EXPECT_EQ(store.totalFreed(), 6);
}

std::string replaced(std::string text, const std::string& part, const std::string& other) {
    const std::size_t found = text.find(part);
    EXPECT_NE(found, std::string::npos) << part;
    return text.replace(found, part.size(), other);
}

TEST_F(HistoryStoreTest, OtherSpellingsAreReadToo) {
    struct Case {
        std::string part, other;
        Date date;
        std::optional<URL> logFile;
    };
    const URL log("/logs/a b.jsonl");
    const Case cases[] = {
        {"file:///logs/a%20b.jsonl", "/logs/a b.jsonl", date, log},
        {"file:///logs/a%20b.jsonl", "file:\\/\\/\\/logs\\/a%20b.jsonl", date, log},
        {"794050200.0", "794050200", date, log},
        {"794050200.0", "7.940502e8", date, log},
        {"794050200.0", "794050200.5", date + std::chrono::milliseconds(500), log},
        {"794050200.0", "-1", parseISO8601("2000-12-31T23:59:59Z").value(), log},
        {R"("failures":9)", R"("failures":9.0,"unknown":{"id":[null]},"extra":null)", date, log},
        {R"(,"logFile":"file:///logs/a%20b.jsonl")", "", date, std::nullopt},
        {R"("file:///logs/a%20b.jsonl")", "null", date, std::nullopt},
    };
    for (const Case& each : cases) {
        write(" [\n " + replaced(oneEntry, each.part, each.other) + " ]\n");
        const HistoryStore store(folder);
        ASSERT_THAT(store.entries(), SizeIs(1)) << each.other;
        EXPECT_EQ(store.entries()[0].date, each.date) << each.other;
        EXPECT_EQ(store.entries()[0].logFile, each.logFile) << each.other;
        EXPECT_EQ(store.entries()[0].failures, 9) << each.other;
    }
}

TEST_F(HistoryStoreTest, WhatIsNoHistoryIsToldAndLeftAlone) {
    std::vector<std::string> texts{"",  "{}",        "null",   "[",      "[1]",
                                   "x", "[]\n[]",    "[{}]",   "[null]", std::string("[]\0", 3),
                                   "1", "\xff\xfe[", "\"[]\"", "[[]]"};
    for (const char* key : {"id", "date", "measuredGain", "estimatedFreed", "movedToTrash",
                            "itemCount", "failures"}) {
        const std::string quoted = fmt::format(R"("{}")", key);
        texts.push_back("[" + replaced(oneEntry, quoted, "\"other\"") + "]");
        texts.push_back("[" + replaced(oneEntry, quoted, quoted + ":null,\"other\"") + "]");
        texts.push_back("[" + replaced(oneEntry, quoted, quoted + ":[],\"other\"") + "]");
    }
    texts.push_back("[" + oneEntry + "," + replaced(oneEntry, "\"id\"", "\"ID\"") + "]");
    texts.push_back("[" + replaced(oneEntry, "794050200.0", "1e300") + "]");
    texts.push_back("[" + replaced(oneEntry, ":5", ":9223372036854775808") + "]");
    texts.push_back("[" + replaced(oneEntry, ":5", ":5.5") + "]");
    texts.push_back("[" + replaced(oneEntry, "\"file:///logs/a%20b.jsonl\"", "7") + "]");
    for (const std::string& text : texts) {
        SCOPED_TRACE(text);
        write(text);
        expectNothingRead(true);
        EXPECT_EQ(contents(file), text);
        EXPECT_THAT(namesInFolder(), ElementsAre("history.json"));
    }
}

TEST_F(HistoryStoreTest, ACutFileIsNeverTakenForAShorterHistory) {
    const std::string whole = "[" + oneEntry + "," + oneEntry + "]";
    testing::internal::CaptureStderr();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        write(whole.substr(0, length));
        EXPECT_THAT(HistoryStore(folder).entries(), IsEmpty()) << length;
    }
    testing::internal::GetCapturedStderr();
    write(whole);
    EXPECT_THAT(HistoryStore(folder).entries(), SizeIs(2));
}

TEST_F(HistoryStoreTest, EntriesOfOneIdAreAllKept) {
    write("[" + oneEntry + "," + oneEntry + "]");
    HistoryStore store(folder);
    EXPECT_THAT(store.entries(), SizeIs(2));
    store.record(numbered(1));
    store.record(numbered(2));
    EXPECT_THAT(numbersOf(store), ElementsAre(6, 6, 1, 2));
    EXPECT_THAT(numbersOnDisk(), ElementsAre(6, 6, 1, 2));
}

TEST_F(HistoryStoreTest, LogFileOfAnyBytesComesBack) {
    HistoryStore store(folder);
    CleanSummary summary = numbered(1);
    summary.logFile = URL("/home/\xff\xfe%20 \"\n#?;é/log");
    store.record(summary);
    EXPECT_EQ(HistoryStore(folder).entries()[0].logFile, summary.logFile);
}

TEST_F(HistoryStoreTest, AnyBytesAreSurvivedAndKept) {
    constexpr int inputs = test::underSanitizer ? 5'000 : 50'000;
    const TempHome memory(TempHome::Place::memory);
    const URL input = memory.path("history.json");
    const std::string original = "[" + oneEntry + "]";
    std::mt19937 random(1);
    const auto below = [&](std::size_t limit) { return random() % limit; };
    const std::string parts[] = {"[", "]", "{", "}", "\"", ",", ":", "null", "-1", "1e999", "\\u"};
    int read = 0;
    testing::internal::CaptureStderr();
    for (int i = 0; i < inputs; ++i) {
        std::string text = original;
        for (std::size_t change = below(4); change > 0; --change) {
            const std::size_t place = below(text.size() + 1);
            switch (below(4)) {
            case 0:
                text.insert(place, parts[below(std::size(parts))]);
                break;
            case 1:
                text.erase(place, below(30));
                break;
            case 2:
                text.insert(place, 1, static_cast<char>(below(256)));
                break;
            default:
                text.resize(place);
            }
        }
        std::ofstream(input.path(), std::ios::binary) << text;
        HistoryStore store(memory.url());
        read += store.entries().empty() ? 0 : 1;
        if (i % 500 == 0) {
            store.record(numbered(1));
            EXPECT_EQ(HistoryStore(memory.url()).entries(), store.entries());
            const URL kept = memory.path("history.json.unreadable");
            EXPECT_TRUE(fileExists(kept) ? contents(kept) == text : parseJson(text).has_value())
                << text;
            unlink(kept.path().c_str());
        }
    }
    testing::internal::GetCapturedStderr();
    EXPECT_GT(read, inputs / 10);
    EXPECT_LT(read, inputs / 2);
}

// Nothing of the user's is lost

TEST_F(HistoryStoreTest, WhatIsNoHistoryIsKeptBesideBeforeTheFirstWrite) {
    testing::internal::CaptureStderr();
    for (const char* number : {"", "-2", "-3"}) {
        const std::string text = std::string("no history") + number;
        write(text);
        HistoryStore store(folder);
        store.record(numbered(1));
        EXPECT_EQ(contents(aside(number)), text);
        store.record(numbered(2));
        EXPECT_THAT(numbersOnDisk(), ElementsAre(1, 2));
    }
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(contents(aside()), "no history");
    EXPECT_EQ(contents(aside("-2")), "no history-2");
    EXPECT_THAT(namesInFolder(),
                UnorderedElementsAre("history.json", "history.json.unreadable",
                                     "history.json.unreadable-2", "history.json.unreadable-3"));
}

TEST_F(HistoryStoreTest, WhatBecomesUnreadableLaterIsKeptBesideTooAndNoEntryIsLost) {
    HistoryStore store(folder);
    store.record(numbered(1));
    write("{}");
    store.record(numbered(2));
    EXPECT_EQ(contents(aside()), "{}");
    EXPECT_THAT(numbersOnDisk(), ElementsAre(1, 2));
}

TEST_F(HistoryStoreTest, AFileThatVanishedComesBackWhole) {
    HistoryStore store(folder);
    store.record(numbered(1));
    unlink(file.path().c_str());
    rmdir(folder.path().c_str());
    store.record(numbered(2));
    EXPECT_THAT(numbersOnDisk(), ElementsAre(1, 2));
}

TEST_F(HistoryStoreTest, EntriesOfOthersComeFirstAndStay) {
    HistoryStore window(folder);
    window.record(numbered(1));
    HistoryStore commandLine(folder);
    commandLine.record(numbered(2));
    window.record(numbered(3));
    EXPECT_THAT(numbersOf(window), ElementsAre(1, 2, 3));
    commandLine.record(numbered(4));
    EXPECT_THAT(numbersOf(commandLine), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(numbersOnDisk(), ElementsAre(1, 2, 3, 4));
}

/// Runs the work in so many child processes at once.
void runAtOnce(int processes, const std::function<void(int)>& work) {
    std::vector<pid_t> children;
    for (int i = 0; i < processes; ++i) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            alarm(60);
            work(i);
            _exit(0);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
}

TEST_F(HistoryStoreTest, ProgramsThatRecordAtOnceLoseNothing) {
    constexpr int processes = 4;
    constexpr int records = 15;
    runAtOnce(processes, [&](int process) {
        HistoryStore store(folder);
        for (int i = 0; i < records; ++i)
            store.record(numbered(process * records + i));
    });
    std::vector<Int64> numbers = numbersOnDisk();
    std::ranges::sort(numbers);
    ASSERT_THAT(numbers, SizeIs(processes * records));
    for (int i = 0; i < processes * records; ++i)
        EXPECT_EQ(numbers[static_cast<std::size_t>(i)], i);
    EXPECT_THAT(namesInFolder(), ElementsAre("history.json"));
}

TEST_F(HistoryStoreTest, AnEntryIsSavedEvenWhereTheLockCantBeHad) {
    home.folder("state/Tidewright");
    {
        const FileLock lock(URL(file.path() + ".lock"), Duration(0));
        ASSERT_TRUE(lock.isHeld());
        HistoryStore(folder).record(numbered(1));
    }
    EXPECT_THAT(numbersOnDisk(), ElementsAre(1));
    unlink((file.path() + ".lock").c_str());
    home.folder("state/Tidewright/history.json.lock");
    HistoryStore(folder).record(numbered(2));
    EXPECT_THAT(numbersOnDisk(), ElementsAre(1, 2));
}

/// Records one entry after the other, and tells of each that is done.
[[noreturn]] void recordForEver(const URL& folder, int told) {
    alarm(60);
    HistoryStore store(folder);
    for (Int64 number = 0;; ++number) {
        store.record(numbered(number));
        if (::write(told, "x", 1) != 1)
            _exit(1);
    }
}

TEST_F(HistoryStoreTest, AKillAtAnyMomentLosesNoEntryThatWasRecorded) {
    constexpr int kills = test::underSanitizer ? 40 : 150;
    const TempHome memory(TempHome::Place::memory);
    std::mt19937 random(1);
    std::size_t before = 0;
    for (int i = 0; i < kills; ++i) {
        std::array<int, 2> ends{};
        ASSERT_EQ(pipe(ends.data()), 0);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0)
            recordForEver(memory.url(), ends[1]);
        close(ends[1]);
        char mark = 0;
        ASSERT_EQ(::read(ends[0], &mark, 1), 1) << "the first entry is recorded";
        usleep(static_cast<useconds_t>(random() % 4000));
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << "it was recording";
        std::size_t recorded = 1;
        while (::read(ends[0], &mark, 1) == 1)
            ++recorded;
        close(ends[0]);
        const auto log = logOf([&] {
            const std::size_t now = HistoryStore(memory.url()).entries().size();
            EXPECT_GE(now, before + recorded);
            EXPECT_LE(now, before + recorded + 1);
            before = now;
        });
        EXPECT_EQ(log.value_or(""), "");
    }
    EXPECT_FALSE(fileExists(memory.path("history.json.unreadable")));
}

// Where it can't be saved

TEST_F(HistoryStoreTest, InAFolderThatMayNotBeWrittenToEntriesStayAndAreSavedLater) {
    home.setMode("", 0777);
    const std::string answer = asOrdinaryUser([&]() -> std::string {
        mkdir(home.path("state").path().c_str(), 0755);
        mkdir(folder.path().c_str(), 0755);
        HistoryStore store(folder);
        store.record(numbered(1));
        const std::string before = contents(file);
        chmod(folder.path().c_str(), 0555);
        const auto log = logOf([&] { store.record(numbered(2)); });
        if (log && log->find("Could not save history: Could not make") == std::string::npos)
            return "the log says " + *log;
        if (numbersOf(store) != std::vector<Int64>{1, 2} || contents(file) != before)
            return "memory or file are wrong";
        chmod(folder.path().c_str(), 0755);
        store.record(numbered(3));
        return numbersOnDisk() == std::vector<Int64>{1, 2, 3} ? "saved" : "not saved later";
    });
    EXPECT_EQ(answer, "saved");
}

TEST_F(HistoryStoreTest, AFileThatMayNotBeReadIsLeftAsItIs) {
    home.setMode("", 0777);
    const std::string answer = asOrdinaryUser([&]() -> std::string {
        mkdir(home.path("state").path().c_str(), 0755);
        HistoryStore(folder).record(numbered(1));
        const std::string before = contents(file);
        chmod(file.path().c_str(), 0);
        std::unique_ptr<HistoryStore> store;
        const auto silent = logOf([&] { store = std::make_unique<HistoryStore>(folder); });
        const auto log = logOf([&] { store->record(numbered(2)); });
        if (silent.value_or("") != "" ||
            (log && log->find("Could not save history: Could not read") == std::string::npos))
            return "the log says " + silent.value_or("") + log.value_or("");
        chmod(file.path().c_str(), 0600);
        if (contents(file) != before || namesInFolder().size() != 1)
            return "it was touched";
        store->record(numbered(3));
        return numbersOnDisk() == std::vector<Int64>{1, 2, 3} ? "whole" : "not whole";
    });
    EXPECT_EQ(answer, "whole");
}

TEST_F(HistoryStoreTest, WhatStandsInItsPlaceStays) {
    home.file("state/Tidewright/history.json/inside", "kept");
    expectNothingRead(false);
    HistoryStore store(folder);
    const auto log = logOf([&] { store.record(numbered(1)); });
    EXPECT_THAT(log.value_or("Could not save history: "), HasSubstr("Could not save history: "));
    EXPECT_EQ(contents(file.appending("inside")), "kept");
    EXPECT_THAT(namesInFolder(), ElementsAre("history.json"));

    const TempHome other;
    const URL inFile = other.file("state", "kept");
    HistoryStore nowhere(inFile.appending("Tidewright"));
    const auto second = logOf([&] { nowhere.record(numbered(1)); });
    EXPECT_THAT(second.value_or("Could not save history: "), HasSubstr("Could not save history: "));
    EXPECT_THAT(numbersOf(nowhere), ElementsAre(1));
    EXPECT_EQ(contents(inFile), "kept");
}

TEST_F(HistoryStoreTest, AFullDiskLeavesTheFileWhole) {
    const URL disk = home.folder("disk");
    const auto answer = test::withOwnMounts([&]() -> std::string {
        if (mount("none", disk.path().c_str(), "tmpfs", 0, "size=256k") != 0)
            return "not mounted";
        HistoryStore store(disk);
        store.record(numbered(1));
        const std::string before = contents(disk.appending("history.json"));
        std::ofstream(disk.appending("ballast").path()) << std::string(1'000'000, 'x');
        const auto log = logOf([&] { store.record(numbered(2)); });
        if (log && log->find("No space left on device") == std::string::npos)
            return "the log says " + *log;
        if (contents(disk.appending("history.json")) != before)
            return "the file was touched";
        unlink(disk.appending("ballast").path().c_str());
        store.record(numbered(3));
        const auto numbers = numbersOf(HistoryStore(disk));
        if (numbers != std::vector<Int64>{1, 2, 3} || readDirectory(disk)->size() != 2)
            return "not saved later";
        return "whole";
    });
    if (!answer)
        GTEST_SKIP() << test::mountsRefused;
    EXPECT_EQ(answer, "whole");
}

// The file itself

TEST_F(HistoryStoreTest, OnlyTheUserMayReadANewFileAndAnOldOneStaysAsOpenAsItWas) {
    const mode_t usual = umask(0);
    HistoryStore store(folder);
    store.record(numbered(1));
    umask(usual);
    EXPECT_EQ(modeOf(folder), 0700U);
    EXPECT_EQ(modeOf(file), 0600U);
    for (const unsigned mode : {0644U, 0400U}) {
        home.setMode("state/Tidewright/history.json", mode);
        store.record(numbered(2));
        EXPECT_EQ(modeOf(file), mode);
    }
    EXPECT_THAT(numbersOnDisk(), ElementsAre(1, 2, 2));
}

TEST_F(HistoryStoreTest, ALinkStaysALink) {
    home.file("dotfiles/tidewright", "[" + oneEntry + "]");
    home.link("state/Tidewright/history.json", "../../dotfiles/tidewright");
    HistoryStore store(folder);
    store.record(numbered(1));
    EXPECT_EQ(fileInfo(file, Links::dontFollow)->kind, FileKind::symbolicLink);
    EXPECT_EQ(fileInfo(home.path("dotfiles/tidewright"), Links::dontFollow)->kind,
              FileKind::regular);
    EXPECT_THAT(numbersOnDisk(), ElementsAre(6, 1));
    EXPECT_THAT(namesInFolder(), ElementsAre("history.json"));

    home.file("dotfiles/tidewright", "no history");
    store.record(numbered(2));
    EXPECT_EQ(contents(home.path("dotfiles/tidewright.unreadable")), "no history");
    EXPECT_THAT(numbersOnDisk(), ElementsAre(6, 1, 2));

    unlink(home.path("dotfiles/tidewright").path().c_str());
    store.record(numbered(3));
    EXPECT_EQ(fileInfo(file, Links::dontFollow)->kind, FileKind::symbolicLink);
    EXPECT_THAT(numbersOnDisk(), ElementsAre(6, 1, 2, 3));
}

} // namespace
} // namespace tidewright
