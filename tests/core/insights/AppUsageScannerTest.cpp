#include "core/insights/AppUsageScanner.h"

#include "core/platform/FileInfo.h"
#include "core/platform/StandardFolders.h"
#include "tests/support/FtsOracle.h"
#include "tests/support/TempHome.h"
#include "tests/support/Threads.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <thread>

namespace tidewright {

// What a failed expectation shows.
static void PrintTo(const AppUsage& app, std::ostream* stream) {
    *stream << app.name << " of " << app.sizeBytes << " bytes at " << app.url.path();
}

namespace {

using namespace std::chrono_literals;
using test::ftsTreeSize;
using test::TempHome;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// Two folders of applications in a temporary home: nothing of this machine is looked at.
class AppUsageScannerTest : public testing::Test {
protected:
    TempHome m_place;
    URL m_all = m_place.folder("all");
    URL m_own = m_place.folder("home/Applications");

    /// A bundle whose name for people is that of its folder.
    URL makeApp(const std::string& path, Int64 bytes = 0, const std::string& identifier = "org.x") {
        const std::string name = m_place.path(path).lastPathComponent();
        m_place.file(path + "/Contents/Info.plist",
                     fmt::format("<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
                                 "<string>{}</string><key>CFBundleName</key><string>{}</string>"
                                 "</dict></plist>",
                                 identifier, name));
        if (bytes > 0)
            m_place.allocatedFile(path + "/Contents/MacOS/program", bytes);
        return m_place.path(path);
    }

    std::vector<AppUsage> scan(const CancelToken& cancel = CancelToken()) const {
        AppUsageScanner scanner(m_place.path("home"));
        scanner.folders = {m_all, m_own};
        return scanner.scan(DirectorySizer(), cancel);
    }

    static std::optional<AppUsage> usage(const URL& app) {
        return AppUsageScanner::usage(app, DirectorySizer(), CancelToken());
    }
};

std::vector<std::string> namesOf(const std::vector<AppUsage>& apps) {
    std::vector<std::string> names;
    for (const AppUsage& app : apps)
        names.push_back(app.name);
    return names;
}

void makeEmptyFiles(const TempHome& home, const std::string& folder, int count) {
    for (int i = 0; i < count; ++i)
        mknod(home.path(fmt::format("{}/{}", folder, i)).path().c_str(), S_IFREG | 0644, 0);
}

TEST_F(AppUsageScannerTest, LooksIntoTheFoldersOfAllUsersAndOfThisOne) {
    EXPECT_EQ(AppUsageScanner(URL("/home/user")).folders,
              (std::vector<URL>{URL("/Applications"), URL("/home/user/Applications")}));
}

TEST_F(AppUsageScannerTest, AppsAreThoseInAFolderAndOneLevelBelow) {
    for (const char* path :
         {"Paint.app", "Utilities/Clock.app", "Utilities/deeper/Lost.app", ".Helper.app",
          ".hidden/Inside.app", "Utilities/.Helper.app", "Shouting.APP", "Paint.app.old", "app",
          "Outer.app/Contents/Inner.app", "Two.app.app", "Folder/Text.apps"})
        m_place.folder(fmt::format("all/{}", path));
    m_place.file("all/readme");
    m_place.file("all/File.app");
    m_place.file("all/Utilities/File.app");
    m_place.link("all/Link.app", "Paint.app");
    m_place.link("all/Nowhere.app", "missing");
    m_place.link("all/nowhere", "missing");
    ASSERT_EQ(mkfifo(m_place.path("all/pipe").path().c_str(), 0644), 0);
    EXPECT_THAT(
        AppUsageScanner::apps(m_all),
        UnorderedElementsAre(m_all.appending("Paint.app"), m_all.appending("Utilities/Clock.app"),
                             m_all.appending("Outer.app"), m_all.appending("Two.app.app"),
                             m_all.appending("File.app"), m_all.appending("Utilities/File.app"),
                             m_all.appending("Link.app"), m_all.appending("Nowhere.app")));
}

TEST_F(AppUsageScannerTest, FolderThatIsEmptyOrMissingOrAFileHoldsNoApps) {
    EXPECT_THAT(AppUsageScanner::apps(m_own), IsEmpty());
    EXPECT_THAT(AppUsageScanner::apps(m_place.path("missing")), IsEmpty());
    EXPECT_THAT(AppUsageScanner::apps(m_place.file("file")), IsEmpty());
    EXPECT_THAT(scan(), IsEmpty());
}

TEST_F(AppUsageScannerTest, FolderThatMayNotBeReadHoldsNoApps) {
    makeApp("all/Paint.app");
    makeApp("all/closed/Clock.app");
    m_place.setMode("", 0755);
    m_place.setMode("all/closed", 0);
    const auto answer = [&] { return fmt::format("{}", AppUsageScanner::apps(m_all).size()); };
    EXPECT_EQ(test::asOrdinaryUser(answer), "1");
    m_place.setMode("all", 0);
    EXPECT_EQ(test::asOrdinaryUser(answer), "0");
}

TEST_F(AppUsageScannerTest, UsageTellsWhatIsKnownOfABundle) {
    const Date before = currentDate() - 1min;
    const URL app = makeApp("all/Paint.app", 65'536, "org.example.Paint");
    const auto found = usage(app);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->url, app);
    EXPECT_EQ(found->name, "Paint");
    EXPECT_EQ(found->bundleIdentifier, "org.example.Paint");
    EXPECT_EQ(found->lastUsed, std::nullopt) << "nobody has opened it";
    EXPECT_GE(found->sizeBytes, 65'536);
    EXPECT_EQ(found->sizeBytes, ftsTreeSize(app));
    const auto file = fileInfo(app, Links::dontFollow);
    ASSERT_TRUE(file);
    if (!file->created)
        GTEST_SKIP() << "this file system keeps no birth times";
    ASSERT_TRUE(found->addedOn);
    EXPECT_GT(*found->addedOn, before);
    EXPECT_EQ(found->idleDays(currentDate()), 0);
}

TEST_F(AppUsageScannerTest, NameLosesTheSuffixWhereverItIs) {
    EXPECT_EQ(usage(makeApp("all/My.app Store.app"))->name, "My Store");
    EXPECT_EQ(usage(makeApp("all/Two.app.app"))->name, "Two");
    EXPECT_EQ(usage(makeApp("all/Apples.app"))->name, "Apples");
}

TEST_F(AppUsageScannerTest, WhatIsNoBundleIsListedWithItsSize) {
    const URL file = m_place.allocatedFile("all/File.app", 65'536);
    const auto found = usage(file);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->name, "File");
    EXPECT_EQ(found->bundleIdentifier, std::nullopt);
    EXPECT_EQ(found->sizeBytes, 65'536);
    const auto missing = usage(m_all.appending("Missing.app"));
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->sizeBytes, 0);
    EXPECT_EQ(missing->addedOn, std::nullopt);
}

TEST_F(AppUsageScannerTest, AppsOfTheSystemAreLeftOut) {
    struct Case {
        const char* name;
        const char* target;
        bool isListed;
    };
    const Case cases[] = {
        {"Clock.app", "/System/Applications/Clock.app", false},
        {"Relative.app", "../../../../../../System/Applications/Clock.app", false},
        {"Twice.app", "Clock.app", false},
        {"Around.app", "/Systematic/../System/Clock.app", false},
        {"Systematic.app", "/Systematic/Clock.app", true},
        {"Inside.app", "missing/System/Clock.app", true},
        {"Root.app", "/System", true},
        {"Circle.app", "Circle.app", true},
    };
    for (const Case& each : cases) {
        const URL link = m_place.link(fmt::format("all/{}", each.name), each.target);
        EXPECT_EQ(usage(link).has_value(), each.isListed) << each.name;
    }
    m_place.link("all/Library", "/System/Library");
    EXPECT_FALSE(usage(m_all.appending("Library/Clock.app")));
    EXPECT_FALSE(usage(URL("/System/Applications/Clock.app")));
    makeApp("all/Paint.app");
    EXPECT_THAT(namesOf(scan()),
                UnorderedElementsAre("Paint", "Systematic", "Inside", "Root", "Circle"));
}

TEST_F(AppUsageScannerTest, LinkToAnAppCountsItsOwnBlocksAlone) {
    const URL app = makeApp("elsewhere/Paint.app", 1'048'576);
    const URL link = m_place.link("all/Paint.app", "../elsewhere/Paint.app");
    const auto found = usage(link);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->url, link);
    EXPECT_EQ(found->sizeBytes, test::allocatedBytes(link));
}

TEST_F(AppUsageScannerTest, FileThatTwoAppsShareCountsInBoth) {
    makeApp("all/A.app");
    makeApp("all/B.app");
    m_place.allocatedFile("all/A.app/framework", 1'048'576);
    m_place.hardLink("all/B.app/framework", "all/A.app/framework");
    for (const AppUsage& app : scan())
        EXPECT_GE(app.sizeBytes, 1'048'576) << app.name;
    EXPECT_EQ(scan().size(), 2U);
}

TEST_F(AppUsageScannerTest, ScanGivesTheAppsOfBothFoldersLargestFirst) {
    std::vector<std::string> expected;
    for (int i = 10; i >= 1; --i) {
        expected.push_back(fmt::format("App {}", i));
        makeApp(fmt::format("{}/App {}.app", i % 2 == 0 ? "all" : "home/Applications/Tools", i),
                i * 65'536);
    }
    const std::vector<AppUsage> found = scan();
    EXPECT_EQ(namesOf(found), expected);
    for (const AppUsage& app : found)
        EXPECT_EQ(app.sizeBytes, ftsTreeSize(app.url)) << app.name;
}

TEST_F(AppUsageScannerTest, FolderThatIsNamedTwiceIsListedTwice) {
    makeApp("all/Paint.app");
    m_own = m_all;
    EXPECT_THAT(namesOf(scan()), ElementsAre("Paint", "Paint"));
}

TEST_F(AppUsageScannerTest, EqualSizesKeepTheirOrder) {
    std::vector<AppUsage> apps;
    for (int i = 0; i < 300; ++i)
        apps.push_back({.url = URL(fmt::format("/{}", i)),
                        .name = std::to_string(i),
                        .bundleIdentifier = std::nullopt,
                        .lastUsed = std::nullopt,
                        .addedOn = std::nullopt,
                        .sizeBytes = i % 3});
    AppUsageScanner::sortLargestFirst(apps);
    for (int i = 0; i < 300; ++i)
        ASSERT_EQ(apps[static_cast<std::size_t>(i)].name,
                  std::to_string(i % 100 * 3 + 2 - i / 100));
}

TEST_F(AppUsageScannerTest, NoMoreThanSixAreMeasuredAtATime) {
    const TempHome memory(TempHome::Place::memory);
    for (int app = 0; app < 10; ++app) {
        const std::string name = fmt::format("{}.app", app);
        memory.folder(name);
        makeEmptyFiles(memory, name, 1000);
    }
    AppUsageScanner scanner(memory.url());
    scanner.folders = {memory.url()};
    const std::size_t before = test::threadsAtRest() + 1; // with the one that scans
    std::size_t most = 0;
    for (int attempt = 0; attempt < 200 && (attempt < 5 || most < 6); ++attempt) {
        std::atomic<bool> isDone = false;
        std::thread scanning([&] {
            EXPECT_EQ(scanner.scan(DirectorySizer(), CancelToken()).size(), 10U);
            isDone = true;
        });
        while (!isDone)
            most = std::max(most, std::max(test::threadCount(), before) - before);
        scanning.join();
        ASSERT_TRUE(test::threadsFallTo(before - 1));
    }
    EXPECT_EQ(most, 6U);
}

TEST_F(AppUsageScannerTest, ScanLeavesEverythingAsItWas) {
    makeApp("all/Paint.app");
    makeApp("all/Utilities/Clock.app");
    m_place.link("all/Link.app", "/System/Applications/Clock.app");
    // File systems note a read in the access time once after a change, and not within its tick.
    std::this_thread::sleep_for(50ms);
    m_place.snapshot();
    const std::string before = m_place.snapshot();
    EXPECT_EQ(scan().size(), 2U);
    EXPECT_EQ(m_place.snapshot(), before);
}

TEST_F(AppUsageScannerTest, CancelledScanMeasuresNothing) {
    makeApp("all/Paint.app");
    CancelSource source;
    source.cancel();
    EXPECT_THAT(scan(source.token()), IsEmpty());
}

TEST_F(AppUsageScannerTest, MeasuringAnAppEndsSoonAfterACancellation) {
    const TempHome memory(TempHome::Place::memory);
    for (int folder = 0; folder < 9; ++folder) {
        memory.allocatedFile(fmt::format("Large.app/{}/first", folder), 4096);
        makeEmptyFiles(memory, fmt::format("Large.app/{}", folder), 1000);
        memory.allocatedFile(fmt::format("Large.app/{}/last", folder), 4096);
    }
    const URL app = memory.path("Large.app");
    CancelSource source;
    source.cancel();
    const auto found = AppUsageScanner::usage(app, DirectorySizer(), source.token());
    ASSERT_TRUE(found);
    EXPECT_LT(found->sizeBytes, ftsTreeSize(app));
}

} // namespace
} // namespace tidewright
