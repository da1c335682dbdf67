#include "core/cleaning/Cleaner.h"

#include "core/platform/Directory.h"
#include "core/platform/FileContents.h"
#include "core/platform/Volumes.h"
#include "core/support/Json.h"
#include "core/support/Text.h"
#include "tests/support/MountNamespace.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <signal.h>
#include <unistd.h>

#include <algorithm>

namespace tidewright {
namespace {

using test::asOrdinaryUser;
using test::TempHome;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using Status = CleanOutcome::Status;

/// What one cleanup told.
struct Told {
    std::vector<std::string> events; ///< "started a", "finished a", "completed"
    CleanSummary summary;
};

CleanMethod commandOf(const std::string& tool,
                      const std::vector<std::string>& arguments = {},
                      const std::optional<URL>& workingDirectory = std::nullopt) {
    return CleanMethod::command({tool, arguments, workingDirectory, false});
}

/// A status in one line.
std::string textOf(const Status& status) {
    const std::string name(Status::cases.at(status.choice.index()));
    return status.reason() ? name + ": " + *status.reason() : name;
}

std::vector<std::string> statusesOf(const CleanSummary& summary) {
    std::vector<std::string> texts;
    for (const CleanOutcome& outcome : summary.outcomes)
        texts.push_back(outcome.title + " " + textOf(outcome.status));
    return texts;
}

/// The value of a key in a line of the log that is known to be simple.
std::string valueIn(const std::string& line, const std::string& key) {
    const auto json = parseJson(line);
    return json && json->contains(key) ? (*json)[key].get<std::string>() : "none";
}

class CleanerTest : public testing::Test {
protected:
    TempHome home;
    Cleaner cleaner = cleanerOf(home.url());

    static Cleaner cleanerOf(const URL& home) {
        return Cleaner{.policy = PathPolicy(home, home.appending("tmp"), {home.appending("work")},
                                            {home.appending("excluded")}),
                       .runner = ShellRunner{locatorOf(home)},
                       .logDirectory = home.appending("logs"),
                       .needed = {},
                       .home = home};
    }

    /// Tools of the home, and of the system those that scripts need.
    static ToolLocator locatorOf(const URL& home) {
        ToolLocator locator;
        locator.searchPath = {home.appending("tools").path(), "/usr/bin", "/bin"};
        return locator;
    }

    ScanItem item(const std::string& title,
                  const CleanMethod& method,
                  const std::vector<std::string>& relativePaths = {}) const {
        ScanItem::Parts parts{.ruleID = "test.rule",
                              .group = "Group",
                              .title = title,
                              .category = Category::system,
                              .decision = Decision::clean,
                              .method = method,
                              .idSuffix = title};
        for (const std::string& path : relativePaths)
            parts.urls.push_back(home.path(path));
        ScanItem made = ScanItem::make(std::move(parts));
        made.sizeBytes = 5'000;
        return made;
    }
    ScanItem removed(const std::string& title,
                     const std::vector<std::string>& relativePaths) const {
        return item(title, CleanMethod::remove(), relativePaths);
    }
    ScanItem commanded(const std::string& tool,
                       const std::vector<std::string>& arguments = {}) const {
        return item(tool, commandOf(tool, arguments));
    }

    std::string executed(const ScanItem& each, const InUseSnapshot& inUse = {}) const {
        const CleanOutcome outcome = cleaner.execute(each, inUse);
        EXPECT_EQ(outcome.itemID, each.id);
        EXPECT_EQ(outcome.title, each.title);
        EXPECT_EQ(outcome.bytes, each.sizeBytes) << "in every status";
        return textOf(outcome.status);
    }

    Told ran(const std::vector<ScanItem>& items, const CancelToken& cancel = CancelToken()) const {
        Told told;
        cleaner.run(
            items, [&](CleanEvent event) { take(told, std::move(event)); }, cancel);
        return told;
    }

    static void take(Told& told, CleanEvent event) {
        if (const auto* started = std::get_if<CleanEvent::Started>(&event.choice))
            told.events.push_back("started " + started->title);
        else if (const auto* finished = std::get_if<CleanEvent::Finished>(&event.choice))
            told.events.push_back("finished " + finished->outcome.title);
        else {
            told.events.emplace_back("completed");
            told.summary = std::get<CleanEvent::Completed>(event.choice).summary;
        }
    }

    /// The lines of the log, and none when there is none.
    static std::vector<std::string> logLines(const CleanSummary& summary) {
        if (!summary.logFile)
            return {};
        const auto text = readText(*summary.logFile);
        return text ? nonEmptyLines(*text) : std::vector<std::string>();
    }

    std::vector<std::string> events(const CleanSummary& summary) const {
        std::vector<std::string> names;
        for (const std::string& line : logLines(summary))
            names.push_back(valueIn(line, "event"));
        return names;
    }

    bool exists(const std::string& relativePath) const {
        return fileInfo(home.path(relativePath), Links::dontFollow).has_value();
    }
};

TEST_F(CleanerTest, AnEmptySelectionYieldsOnlyTheEnd) {
    home.folder("Library/Android/sdk/platform-tools");
    const Told told = ran({});
    EXPECT_THAT(told.events, ElementsAre("completed"));
    EXPECT_THAT(told.summary.outcomes, IsEmpty());
    EXPECT_THAT(told.summary.verification,
                ElementsAre(VerificationCheck{"adb", false, "Missing: needed by Android tooling"}));
    EXPECT_THAT(events(told.summary), ElementsAre("start", "finish", "verify-failed"));
    EXPECT_GT(told.summary.diskBefore.totalBytes, 0);
}

TEST_F(CleanerTest, AnItemIsRemovedWithAllItsLocations) {
    home.file("cache/a/1", "x");
    home.file("cache/b", "x");
    home.file("cache/c", "x");
    EXPECT_EQ(executed(removed("Cache", {"cache/a", "cache/b"})), "cleaned");
    EXPECT_FALSE(exists("cache/a"));
    EXPECT_FALSE(exists("cache/b"));
    EXPECT_TRUE(exists("cache/c"));
}

TEST_F(CleanerTest, WhatIsGoneAlreadyCountsAsCleaned) {
    EXPECT_EQ(executed(removed("Gone", {"cache/gone"})), "cleaned");
    const Told told = ran({removed("Gone", {"cache/gone"})});
    EXPECT_EQ(told.summary.estimatedFreed(), 5'000);
}

TEST_F(CleanerTest, ALocationInsideAnotherOneIsGoneWithIt) {
    home.file("cache/a/b/1", "x");
    EXPECT_EQ(executed(removed("Nested", {"cache/a", "cache/a/b", "cache/a"})), "cleaned");
    EXPECT_FALSE(exists("cache/a"));
}

TEST_F(CleanerTest, WhatIsKeptIsSkippedBeforeItsPathsAreLookedAt) {
    for (const Decision decision : {Decision::keep, Decision::info}) {
        ScanItem kept = removed("Kept", {".ssh/id"});
        kept.decision = decision;
        EXPECT_EQ(executed(kept), "skipped: Tidewright recommends keeping this.");
    }
    ScanItem asked = removed("Asked", {"cache/x"});
    asked.decision = Decision::ask;
    EXPECT_EQ(executed(asked), "cleaned");
}

TEST_F(CleanerTest, WhoseOwnerRunsNowIsSkipped) {
    home.file("cache/a", "x");
    InUseSnapshot inUse;
    inUse.processCommandLines = {"/usr/bin/thing --serve"};
    for (const CleanMethod& method : {CleanMethod::remove(), CleanMethod::trash(),
                                      CleanMethod::manual("By hand."), commandOf("thing")}) {
        ScanItem owned = item("Owned", method, {"cache/a"});
        owned.owner = AppMatcher{"The Thing", {}, {"bin/thing"}};
        EXPECT_EQ(executed(owned, inUse), "skipped: The Thing is running.");
    }
    EXPECT_TRUE(exists("cache/a"));
}

TEST_F(CleanerTest, TheScansPictureOfWhatRunsIsNotUsed) {
    // Both are looked at anew: what runs by the identifiers passed in does not count.
    home.file("cache/a", "x");
    InUseSnapshot old;
    old.runningBundleIdentifiers = {"com.example.thing"};
    ScanItem owned = removed("Owned", {"cache/a"});
    owned.owner = AppMatcher{"The Thing", {"com.example.thing"}, {}};
    EXPECT_EQ(executed(owned, old), "cleaned");
}

TEST_F(CleanerTest, AProcessThatRunsAtTheBeginningOfTheCleanupCounts) {
    home.file("cache/a", "x");
    const URL tool = home.tool("tools/unmistakable", "sleep 1000 & echo $! >\"$0.pid\"; wait");
    ChildTask<bool> running([&] {
        return runProcess({tool, {}, processEnvironment(), std::nullopt, std::chrono::minutes(1)},
                          CancelToken())
            .has_value();
    });
    while (!exists("tools/unmistakable.pid"))
        usleep(1000);
    ScanItem owned = removed("Owned", {"cache/a"});
    owned.owner = AppMatcher{"The Tool", {}, {tool.path()}};
    EXPECT_THAT(statusesOf(ran({owned}).summary),
                ElementsAre("Owned skipped: The Tool is running."));
    EXPECT_TRUE(exists("cache/a"));
    std::string number;
    while (number.empty())
        number = trimmed(readText(home.path("tools/unmistakable.pid")).value_or(""));
    kill(std::stoi(number), SIGTERM);
    running.await();
}

TEST_F(CleanerTest, WhatIsDoneByHandIsSkipped) {
    EXPECT_EQ(executed(item("Manual", CleanMethod::manual("Open Xcode."), {"cache/a"})),
              "skipped: This one is done by hand.");
}

TEST_F(CleanerTest, OneForbiddenLocationSavesAll) {
    home.file("cache/a", "x");
    home.file("app/.git/config", "x");
    home.file("work/app/node_modules/x", "x");
    home.file("excluded/x", "x");
    const std::string before = home.outline();
    const auto path = [&](const char* relative) { return home.path(relative).path(); };
    for (const CleanMethod& method : {CleanMethod::remove(), CleanMethod::trash()}) {
        EXPECT_EQ(executed(item("Git", method, {"cache/a", "app/.git"})),
                  "skipped: " + path("app/.git") +
                      " looks like source control, signing keys or secrets.");
        EXPECT_EQ(executed(item("Project", method, {"cache/a", "work/app/node_modules"})),
                  "skipped: " + path("work/app/node_modules") +
                      " is inside a project and was not explicitly selected.");
        EXPECT_EQ(executed(item("Excluded", method, {"cache/a", "excluded/x"})),
                  "skipped: " + path("excluded/x") + " is on the never-touch list.");
    }
    EXPECT_EQ(home.outline(), before);
    ScanItem project = removed("Project", {"work/app/node_modules"});
    project.isProjectItem = true;
    EXPECT_EQ(executed(project), "cleaned");
}

TEST_F(CleanerTest, AToolThatEndsWellCleans) {
    home.tool("tools/thing", "printf '%s|' \"$@\" \"$PWD\" >\"${0%/*}/said\"; exit 0");
    ScanItem cleaned = item("Thing", commandOf("thing", {"cache", "a b"}, home.url()));
    EXPECT_EQ(executed(cleaned), "cleaned");
    EXPECT_EQ(readText(home.path("tools/said")), "cache|a b|" + home.url().path() + "|");
}

TEST_F(CleanerTest, AToolThatFailsIsQuoted) {
    home.tool("tools/silent", "exit 3");
    home.tool("tools/loud", "echo '  out  '; echo '  went wrong  ' >&2; exit 4");
    home.tool("tools/plain", "echo; echo ' only out '; exit 5");
    home.tool("tools/long",
              "i=0; while [ $i -lt 400 ]; do printf 'é' >&2; i=$((i+1)); done; exit 1");
    EXPECT_EQ(executed(commanded("silent", {"a b", "c"})),
              "failed: `silent 'a b' c` exited with 3. ");
    EXPECT_EQ(executed(commanded("loud")), "failed: `loud` exited with 4. went wrong");
    EXPECT_EQ(executed(commanded("plain")), "failed: `plain` exited with 5. only out");
    std::string tail;
    for (int i = 0; i < 300; ++i)
        tail += "é";
    EXPECT_EQ(executed(commanded("long")), "failed: `long` exited with 1. " + tail);
}

TEST_F(CleanerTest, WithoutItsToolAnItemFails) {
    EXPECT_EQ(executed(commanded("no-such-tool")),
              "failed: no-such-tool is not installed or not on PATH.");
}

class CleanerFallbackTest : public CleanerTest {
protected:
    ScanItem withFallback(const std::vector<std::string>& relativePaths) const {
        return item("Fallback", CleanMethod::command({"no-such-tool", {}, std::nullopt, true}),
                    relativePaths);
    }
};

TEST_F(CleanerFallbackTest, WithoutTheToolItsLocationsAreRemoved) {
    home.file("cache/a", "x");
    EXPECT_EQ(executed(withFallback({"cache/a"})), "cleaned");
    EXPECT_FALSE(exists("cache/a"));
}

TEST_F(CleanerFallbackTest, TheyAreCheckedLikeAllOthers) {
    home.file("cache/a", "x");
    EXPECT_EQ(executed(withFallback({"cache/a", ".ssh/id"})),
              "skipped: " + home.path(".ssh/id").path() + " is on the never-touch list.");
    EXPECT_TRUE(exists("cache/a"));
}

TEST_F(CleanerFallbackTest, ItNeedsALocation) {
    EXPECT_EQ(executed(withFallback({})), "failed: no-such-tool is not installed or not on PATH.");
}

TEST_F(CleanerFallbackTest, AToolThatIsThereAndFailsIsNoReasonToRemove) {
    home.file("cache/a", "x");
    home.tool("tools/no-such-tool", "exit 1");
    EXPECT_EQ(executed(withFallback({"cache/a"})), "failed: `no-such-tool` exited with 1. ");
    EXPECT_TRUE(exists("cache/a"));
}

TEST_F(CleanerTest, AReadOnlyTreeGoesAtTheSecondAttempt) {
    home.file("cache/modules/a/1", "x");
    home.file("cache/modules/b/2", "x");
    home.setMode(".", 0755);
    for (const char* file : {"cache/modules/a/1", "cache/modules/b/2"})
        home.setMode(file, 0444);
    for (const char* folder : {"cache/modules/a", "cache/modules/b", "cache/modules"})
        home.setMode(folder, 0555);
    chown(home.path("cache").path().c_str(), 65534, 65534);
    for (const char* path : {"cache/modules", "cache/modules/a", "cache/modules/b",
                             "cache/modules/a/1", "cache/modules/b/2"})
        chown(home.path(path).path().c_str(), 65534, 65534);
    EXPECT_EQ(asOrdinaryUser([&] { return executed(removed("Modules", {"cache/modules"})); }),
              "cleaned");
    EXPECT_FALSE(exists("cache/modules"));
}

TEST_F(CleanerTest, TheFirstFailureEndsAnItemButNotTheOthers) {
    home.file("closed/a", "x");
    home.file("open/b", "x");
    home.file("open/c", "x");
    home.setMode("open", 0777);
    home.setMode(".", 0755);
    EXPECT_EQ(asOrdinaryUser([&] {
                  return executed(removed("Both", {"closed/a", "open/b"})) + "\n" +
                         executed(removed("Other", {"open/c"}));
              }),
              "failed: Could not remove " + home.path("closed/a").path() +
                  ": Permission denied.\ncleaned");
    EXPECT_TRUE(exists("closed/a"));
    EXPECT_TRUE(exists("open/b"));
    EXPECT_FALSE(exists("open/c"));
}

TEST_F(CleanerTest, WhatIsInTheTrashStaysThereWhenTheNextLocationFails) {
    setenv("XDG_DATA_HOME", home.path("data").path().c_str(), 1);
    home.file("downloads/first", "x");
    home.file("downloads/third", "x");
    const std::vector<std::string> paths{"downloads/first", "downloads/second", "downloads/third"};
    const std::string status = executed(item("Two", CleanMethod::trash(), paths));
    const std::string alone = executed(item("One", CleanMethod::trash(), {"downloads/third"}));
    unsetenv("XDG_DATA_HOME");
    EXPECT_EQ(status, "failed: Could not move to the Trash " +
                          home.path("downloads/second").path() + ": No such file or directory.");
    EXPECT_FALSE(exists("downloads/first"));
    EXPECT_TRUE(exists("data/Trash/files/first"));
    EXPECT_TRUE(exists("data/Trash/info/first.trashinfo"));
    EXPECT_EQ(alone, "movedToTrash") << "it had been left where it was";
    EXPECT_TRUE(exists("data/Trash/files/third"));
}

TEST_F(CleanerTest, AnAppBundleThatStaysNeedsAPermission) {
    home.file("caches/updater/Thing.app/Contents/Info.plist", "x");
    home.setMode(".", 0755);
    home.setMode("caches", 0755);
    EXPECT_EQ(asOrdinaryUser([&] { return executed(removed("Updater", {"caches/updater"})); }),
              "failed: updater contains an app bundle, and macOS only lets apps with App "
              "Management permission delete those. Turn on Tidewright in System Settings → Privacy "
              "& Security → App Management, then clean again.");
    EXPECT_TRUE(exists("caches/updater/Thing.app/Contents/Info.plist"));
}

TEST_F(CleanerTest, CommandsGoFirstAndOneByOne) {
    const char* body = "echo \"$1 begins\" >>\"${0%/*}/said\"; sleep 0.05; "
                       "echo \"$1 ends\" >>\"${0%/*}/said\"";
    home.tool("tools/thing", body);
    std::vector<ScanItem> items;
    std::string expected;
    for (const char* name : {"a", "b", "c"}) {
        items.push_back(removed(std::string("file ") + name, {std::string("cache/") + name}));
        items.push_back(item(name, commandOf("thing", {name})));
        expected += std::string(name) + " begins\n" + name + " ends\n";
    }
    const Told told = ran(items);
    EXPECT_EQ(readText(home.path("tools/said")), expected);
    const std::vector<std::string> first(told.events.begin(), told.events.begin() + 6);
    EXPECT_THAT(first, ElementsAre("started a", "finished a", "started b", "finished b",
                                   "started c", "finished c"));
}

TEST_F(CleanerTest, ThreeOthersAreUnderWayAtMost) {
    std::vector<ScanItem> items;
    for (int i = 0; i < 40; ++i) {
        home.file(fmt::format("cache/{}/file", i), "x");
        items.push_back(removed(std::to_string(i), {fmt::format("cache/{}", i)}));
    }
    const Told told = ran(items);
    EXPECT_THAT(std::vector(told.events.begin(), told.events.begin() + 3),
                ElementsAre("started 0", "started 1", "started 2"));
    int underWay = 0;
    std::vector<std::string> begun;
    for (const std::string& event : told.events) {
        if (event.starts_with("started ")) {
            begun.push_back(event.substr(8));
            EXPECT_LE(++underWay, 3);
        } else if (event.starts_with("finished ")) {
            EXPECT_THAT(begun, Contains(event.substr(9)));
            --underWay;
        }
    }
    EXPECT_EQ(underWay, 0);
    EXPECT_EQ(begun.size(), 40U);
    EXPECT_EQ(told.summary.outcomes.size(), 40U);
    EXPECT_EQ(told.events.back(), "completed");
}

TEST_F(CleanerTest, TheLogTellsEveryItemInTheOrderOfCompletion) {
    home.file("cache/a", "x");
    home.tool("tools/thing", "echo no >&2; exit 1");
    ScanItem kept = removed("Kept", {"cache/kept"});
    kept.decision = Decision::keep;
    const Told told = ran({removed("Removed", {"cache/a", "cache/b"}), kept, commanded("thing")});
    ASSERT_TRUE(told.summary.logFile);
    EXPECT_TRUE(told.summary.logFile->isInside(home.path("logs")));
    std::vector<std::string> titles;
    std::vector<std::string> logged;
    for (const CleanOutcome& outcome : told.summary.outcomes)
        titles.push_back(outcome.itemID);
    const std::vector<std::string> lines = logLines(told.summary);
    for (const std::string& line : lines)
        if (valueIn(line, "event") == "item")
            logged.push_back(valueIn(line, "id"));
    EXPECT_EQ(logged, titles);
    EXPECT_THAT(events(told.summary), ElementsAre("start", "item", "item", "item", "finish"));
    EXPECT_EQ(valueIn(lines.front(), "items"), "3");
    EXPECT_EQ(valueIn(lines.front(), "available"),
              std::to_string(told.summary.diskBefore.availableBytes));
    EXPECT_EQ(valueIn(lines.back(), "available"),
              std::to_string(told.summary.diskAfter.availableBytes));
    EXPECT_EQ(valueIn(lines.back(), "gain"), std::to_string(told.summary.measuredGain()));
}

TEST_F(CleanerTest, WithoutALogItCleansAllTheSame) {
    home.file("logs", "a file where the folder should be");
    home.file("cache/a", "x");
    const Told told = ran({removed("Removed", {"cache/a"})});
    EXPECT_EQ(told.summary.logFile, std::nullopt);
    EXPECT_THAT(statusesOf(told.summary), ElementsAre("Removed cleaned"));
    EXPECT_FALSE(exists("cache/a"));
}

TEST_F(CleanerTest, SpaceThatIsLostMeanwhileIsANegativeGain) {
    // On a disk of its own, where nobody else makes or frees space.
    const auto answer = test::withOwnMounts([&]() -> std::string {
        if (!test::mountMemory(home.url()))
            return "not mounted";
        home.tool("tools/thing", "head -c 3000000 /dev/zero >\"${0%/*}/made\"");
        const Told told = ran({commanded("thing")});
        const std::vector<std::string> lines = logLines(told.summary);
        if (lines.empty() || told.summary.measuredGain() > -3'000'000)
            return "no gain: " + std::to_string(told.summary.measuredGain());
        return valueIn(lines.back(), "gain") == std::to_string(told.summary.measuredGain())
                   ? "as expected"
                   : lines.back();
    });
    if (!answer)
        GTEST_SKIP() << test::mountsRefused;
    EXPECT_EQ(*answer, "as expected");
}

TEST_F(CleanerTest, WhatCannotBeMeasuredIsZero) {
    cleaner.home = home.path("missing");
    const Told told = ran({});
    EXPECT_EQ(told.summary.diskBefore, DiskSpace());
    EXPECT_EQ(told.summary.diskAfter, DiskSpace());
}

TEST_F(CleanerTest, CancelledBeforeItBeginsItStillDoesItsLastSteps) {
    home.file("cache/a", "x");
    home.folder("Library/Android/sdk/platform-tools");
    CancelSource source;
    source.cancel();
    const Told told = ran({removed("Removed", {"cache/a"}), commanded("thing")}, source.token());
    EXPECT_THAT(told.events, ElementsAre("completed"));
    EXPECT_THAT(events(told.summary), ElementsAre("start", "finish", "verify-failed"));
    EXPECT_TRUE(exists("cache/a"));
}

TEST_F(CleanerTest, ACancellationLetsWhatIsUnderWayEndAndBeginsNothingMore) {
    home.tool("tools/thing", "sleep 0.1; echo done >\"${0%/*}/said\"");
    home.file("cache/a", "x");
    CancelSource source;
    Told told;
    cleaner.run(
        {commanded("thing"), commanded("other"), removed("Removed", {"cache/a"})},
        [&](CleanEvent event) {
            take(told, std::move(event));
            source.cancel(); // at the very first event: the tool is about to run
        },
        source.token());
    EXPECT_THAT(told.events, ElementsAre("started thing", "finished thing", "completed"));
    EXPECT_THAT(statusesOf(told.summary), ElementsAre("thing cleaned"));
    EXPECT_TRUE(exists("tools/said"));
    EXPECT_TRUE(exists("cache/a"));
    EXPECT_THAT(events(told.summary), ElementsAre("start", "item", "finish"));
}

TEST_F(CleanerTest, TheStreamTellsTheSame) {
    home.file("cache/a", "x");
    Told told;
    CleanStream stream = cleaner.clean({removed("Removed", {"cache/a"})});
    while (auto event = stream.next())
        take(told, std::move(*event));
    EXPECT_THAT(told.events, ElementsAre("started Removed", "finished Removed", "completed"));
    EXPECT_THAT(statusesOf(told.summary), ElementsAre("Removed cleaned"));
}

TEST_F(CleanerTest, ADroppedStreamStillFinishesItsLog) {
    home.tool("tools/thing", "sleep 0.1");
    home.file("cache/a", "x");
    { // Read up to the first event, so that the tool has been begun.
        CleanStream stream = cleaner.clean({commanded("thing"), removed("Removed", {"cache/a"})});
        stream.next();
    }
    const auto logs = readDirectory(home.path("logs"));
    ASSERT_TRUE(logs && logs->size() == 1);
    CleanSummary summary;
    summary.logFile = home.path("logs").appending(logs->front().name);
    EXPECT_THAT(events(summary), ElementsAre("start", "item", "finish"));
    EXPECT_TRUE(exists("cache/a"));
}

} // namespace
} // namespace tidewright
