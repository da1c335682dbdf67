#include "core/rules/Xcode.h"

#include "core/scan/DiskScanner.h"
#include "tests/support/MountNamespace.h"
#include "tests/support/RuleTesting.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <unistd.h>

namespace tidewright::test {

namespace {

using namespace std::chrono_literals;

Date at(std::string_view text) { return parseISO8601(text).value(); }

const Date longAgo = at("2024-01-01T00:00:00Z");

const AppMatcher xcode{"Xcode", {"com.apple.dt.Xcode"}, {}};
const AppMatcher simulator{"Simulator", {"com.apple.iphonesimulator"}, {}};

/// What each item of these rules has unless told otherwise.
ScanItem item(std::string ruleID, const URL& url) {
    return usualItem(Category::xcode, std::move(ruleID), {url});
}

std::vector<std::string> titles(const std::vector<ScanItem>& items) {
    std::vector<std::string> titles;
    for (const ScanItem& each : items)
        titles.push_back(each.title);
    return titles;
}

class XcodeTest : public RuleTest {
protected:
    /// A folder that holds a file, as old as told.
    URL folder(const std::string& path, Date modified = longAgo) const {
        home.file(path + "/contents", "x");
        home.setModified(path, modified);
        return home.path(path);
    }
};

// What is left alone

class XcodeLeavesAlone : public testing::TestWithParam<LeftAlone> {};

TEST_P(XcodeLeavesAlone, ThisHome) {
    const TempHome home;
    make(home, GetParam(), "x");
    expectItems(GetParam().scan(contextOf(home)), {});
}

const LeftAlone leftAlone[] = {
    {.name = "NoDerivedData", .scan = scanWith<DerivedDataRule>},
    {.name = "EmptyDerivedData",
     .scan = scanWith<DerivedDataRule>,
     .folders = {"Library/Developer/Xcode/DerivedData"}},
    {.name = "FileInPlaceOfDerivedData",
     .scan = scanWith<DerivedDataRule>,
     .files = {"Library/Developer/Xcode/DerivedData"}},
    {.name = "DerivedDataThatIsNoFolder",
     .scan = scanWith<DerivedDataRule>,
     .files = {"Library/Developer/Xcode/DerivedData/App-abc",
               "Library/Developer/Xcode/DerivedData/.DS_Store"},
     .folders = {"elsewhere", "Library/Developer/Xcode/DerivedData/.App-abc"},
     .links = {{"Library/Developer/Xcode/DerivedData/Linked-abc", "../../../../elsewhere"},
               {"Library/Developer/Xcode/DerivedData/Dangling-abc", "gone"}}},
    {.name = "DerivedDataElsewhere",
     .scan = scanWith<DerivedDataRule>,
     .folders = {"Library/Developer/Xcode/DerivedData 2/App-abc",
                 "Library/Developer/DerivedData/App-abc", "Library/Developer/Xcode/App-abc",
                 "Library/Developer/Xcode/Products/App-abc", "DerivedData/App-abc",
                 "Projects/App/DerivedData/App-abc"}},
    {.name = "DeviceSupportThatIsNoFolder",
     .scan = scanWith<DeviceSupportRule>,
     .files = {"Library/Developer/Xcode/iOS DeviceSupport/17.5 (21F79)",
               "Library/Developer/Xcode/tvOS DeviceSupport"},
     .folders = {"elsewhere", "Library/Developer/Xcode/watchOS DeviceSupport",
                 "Library/Developer/Xcode/iOS DeviceSupport/.17.6 (21G80)"},
     .links = {{"Library/Developer/Xcode/iOS DeviceSupport/17.4 (21E213)", "../../../../elsewhere"},
               {"Library/Developer/Xcode/visionOS DeviceSupport/1.0", "gone"}}},
    {.name = "DeviceSupportOfNoKnownPlatform",
     .scan = scanWith<DeviceSupportRule>,
     .folders = {"Library/Developer/Xcode/macOS DeviceSupport/14.0",
                 "Library/Developer/Xcode/iPadOS DeviceSupport/17.0",
                 "Library/Developer/Xcode/xrOS DeviceSupport/1.0",
                 "Library/Developer/Xcode/iOS DeviceSupport 2/17.0",
                 "Library/Developer/Xcode/ DeviceSupport/17.0",
                 "Library/Developer/Xcode/DeviceSupport/17.0",
                 "Library/Developer/Xcode/iOS Device Logs/17.0",
                 "Library/Developer/iOS DeviceSupport/17.0"}},
    {.name = "FileInPlaceOfArchives",
     .scan = scanWith<XcodeArchivesRule>,
     .files = {"Library/Developer/Xcode/Archives"}},
    {.name = "ArchiveOutsideADateFolder",
     .scan = scanWith<XcodeArchivesRule>,
     .files = {"Library/Developer/Xcode/Archives/App.xcarchive/Info.plist",
               "Library/Developer/Xcode/Archives/App.xcarchive/dSYMs/App.app.dSYM/Info.plist"}},
    {.name = "ArchivesElsewhere",
     .scan = scanWith<XcodeArchivesRule>,
     .folders = {"Library/Developer/Xcode/Archives/2026-01-05/inner/App.xcarchive",
                 "Library/Developer/Xcode/Archives/.2026-01-05/App.xcarchive",
                 "Library/Developer/Xcode/Archives 2/2026-01-05/App.xcarchive",
                 "Library/Developer/Archives/2026-01-05/App.xcarchive",
                 "Documents/Archives/2026-01-05/App.xcarchive"}},
    {.name = "WhatIsNoArchive",
     .scan = scanWith<XcodeArchivesRule>,
     .files = {"Library/Developer/Xcode/Archives/2026-01-05/App.XCARCHIVE",
               "Library/Developer/Xcode/Archives/2026-01-05/Other.XcArchive",
               "Library/Developer/Xcode/Archives/2026-01-05/App.xcarchive.zip",
               "Library/Developer/Xcode/Archives/2026-01-05/App.xcarchive ",
               "Library/Developer/Xcode/Archives/2026-01-05/App.xcarchive\n",
               "Library/Developer/Xcode/Archives/2026-01-05/App.xcarchives",
               "Library/Developer/Xcode/Archives/2026-01-05/xcarchive",
               "Library/Developer/Xcode/Archives/2026-01-05/.xcarchive",
               "Library/Developer/Xcode/Archives/2026-01-05/.App.xcarchive",
               "Library/Developer/Xcode/Archives/2026-01-06"},
     .folders = {"Library/Developer/Xcode/Archives/2026-01-05/App.dSYM"},
     .links = {{"Library/Developer/Xcode/Archives/2026-01-07", "gone"}}},
    {.name = "CachesOfOthers",
     .scan = scanWith<XcodeCachesRule>,
     .folders = {"Library/Caches/com.apple.dt.Xcode.sourcecontrol.WorkingCopyScanner",
                 "Library/Caches/com.apple.dt.XcodeBuild", "Library/Caches/com.apple.dt",
                 "Library/Caches/com.apple.Xcode", ".cache/com.apple.dt.Xcode",
                 "Library/Developer/CoreSimulator/Devices/UDID/data",
                 "Library/Developer/CoreSimulator/Profiles/Runtimes",
                 "Library/Developer/CoreSimulator/Temp", "Library/Developer/Caches",
                 "Library/Developer/Xcode/UserData/Previews 2", "Library/Developer/Xcode/Previews"},
     .links = {{"Library/Caches/com.apple.dt.Xcode", "gone"},
               {"Library/Developer/CoreSimulator/Caches", "gone"},
               {"Library/Developer/Xcode/UserData/Previews", "gone"}}},
    {.name = "XcodesOwnData",
     .scan = scanWith<XcodeCachesRule>,
     .files = {"Library/Developer/Xcode/UserData/CodeSnippets/a.codesnippet",
               "Library/Developer/Xcode/UserData/KeyBindings/a.idekeybindings",
               "Library/Developer/Xcode/UserData/Provisioning Profiles/a.mobileprovision",
               "Library/Developer/Xcode/UserData/IDEEditorInteractivityHistory",
               "Library/Developer/Xcode/Templates/File Templates/a.xctemplate"}},
    {.name = "PodsOfOthers",
     .scan = scanWith<CocoaPodsRule>,
     .folders = {"Library/Caches/CocoaPods 2", "Library/Caches/org.cocoapods", ".cocoapods/repos",
                 "Library/CocoaPods", "CocoaPods", "Projects/App/ios/Pods",
                 "Library/Caches/ReactNative 2", "Library/Caches/com.facebook.ReactNative",
                 "Library/ReactNative"},
     .links = {{"Library/Caches/CocoaPods", "gone"}, {"Library/Caches/ReactNative", "gone"}}},
};

INSTANTIATE_TEST_SUITE_P(All, XcodeLeavesAlone, testing::ValuesIn(leftAlone), [](const auto& each) {
    return each.param.name;
});

TEST_F(XcodeTest, FoldersThatMayNotBeListedGiveNothing) {
    const std::vector<std::string> closed{"Library/Developer/Xcode/DerivedData",
                                          "Library/Developer/Xcode/iOS DeviceSupport",
                                          "Library/Developer/Xcode/Archives/2026-01-05"};
    for (const std::string& path : closed)
        home.folder(path + "/App.xcarchive");
    home.setMode("", 0755);
    const auto count = [this] {
        return std::to_string(scan<DerivedDataRule>().size() + scan<DeviceSupportRule>().size() +
                              scan<XcodeArchivesRule>().size());
    };
    EXPECT_EQ(asOrdinaryUser(count), "3");
    for (const std::string& path : closed)
        home.setMode(path, 0);
    EXPECT_EQ(asOrdinaryUser(count), "0");
}

// DerivedData

class DerivedDataTest : public XcodeTest {
protected:
    ScanItem found(const std::string& name, std::string title, Date modified = longAgo) const {
        ScanItem expected = item("xcode.derivedData",
                                 folder("Library/Developer/Xcode/DerivedData/" + name, modified));
        expected.group = "DerivedData";
        expected.title = std::move(title);
        expected.reason = "Build products and indexes. Xcode rebuilds them.";
        expected.whatItIs =
            "Intermediate build files, products and the code index for one Xcode project.";
        expected.afterEffect =
            "The next build of this project is a full build and Xcode re-indexes once.";
        expected.owner = xcode;
        expected.lastUsed = modified;
        return expected;
    }
};

TEST_F(DerivedDataTest, OneItemForEachFolderInTheOrderOfNames) {
    const ScanItem ten = found("App 10-cdef", "App 10", now - 24h);
    const ScanItem two = found("App 2-abcd", "App 2");
    home.file("Library/Developer/Xcode/DerivedData/info.plist", "x");
    expectItems(scan<DerivedDataRule>(), {two, ten});
}

TEST_F(DerivedDataTest, OnlyWhatFollowsTheLastDashGoes) {
    const std::pair<const char*, const char*> names[] = {
        {"App-fjkdsla", "App"},
        {"ModuleCache.noindex", "ModuleCache.noindex"},
        {"my-first-app-fjkdsla", "my-first-app"},
        {"a--b-fjkdsla", "a--b"},
        {"trailing-", "trailing"},
        {"-fjkdsla", "-fjkdsla"},
        {"-", "-"},
        {"Café – Menu-fjkdsla", "Café – Menu"},
        {"\xff-fjkdsla", "\xff"},
    };
    for (const auto& [name, title] : names) {
        const TempHome other;
        const URL url = other.folder(std::string("Library/Developer/Xcode/DerivedData/") + name);
        const auto items = scanWith<DerivedDataRule>(contextOf(other));
        ASSERT_EQ(items.size(), 1U) << name;
        EXPECT_EQ(items.front().title, title);
        EXPECT_EQ(items.front().id, "xcode.derivedData:" + url.path());
    }
}

TEST_F(DerivedDataTest, WhileXcodeRunsTheScanKeepsIt) {
    ScanItem expected = found("App-abc", "App");
    launch("com.apple.dt.Xcode");
    expectItems(scan<DerivedDataRule>(), {expected});
    expected.decision = Decision::keep;
    expected.reason = "Xcode is running. Quit it, then scan again to clean this.";
    expected.inUseBy = "Xcode";
    expectItems(DiskScanner::applyInUseAndExclusions(scan<DerivedDataRule>(), context.inUse, {}),
                {expected});
}

TEST_F(DerivedDataTest, WhileTheSimulatorRunsItMayGo) {
    const ScanItem expected = found("App-abc", "App");
    launch("com.apple.iphonesimulator");
    launch("com.apple.dt.Xcode.helper");
    context.inUse.processCommandLines = {"/Applications/Xcode.app/Contents/MacOS/Xcode"};
    expectItems(DiskScanner::applyInUseAndExclusions(scan<DerivedDataRule>(), context.inUse, {}),
                {expected});
}

// Device support

class DeviceSupportTest : public XcodeTest {
protected:
    ScanItem found(const std::string& platform,
                   const std::string& name,
                   Date modified,
                   bool recent) const {
        const URL url = folder(
            fmt::format("Library/Developer/Xcode/{} DeviceSupport/{}", platform, name), modified);
        ScanItem expected = item("xcode.deviceSupport", url);
        expected.group = platform + " device support";
        expected.title = name;
        expected.decision = recent ? Decision::keep : Decision::clean;
        expected.reason =
            recent ? "One of the 2 most recently used " + platform + " versions."
                   : "Older " + platform + " version than the devices you used recently.";
        expected.whatItIs = "Debug symbols copied from a physical " + platform +
                            " device the first time you ran on it.";
        expected.afterEffect = "Xcode copies them again (a few minutes) the next time you connect "
                               "a device on this version.";
        expected.owner = xcode;
        expected.lastUsed = modified;
        return expected;
    }
};

TEST_F(DeviceSupportTest, TheTwoMostRecentVersionsOfEachPlatformAreKept) {
    const ScanItem vision = found("visionOS", "1.0", now - 24h * 400, true);
    const ScanItem tv = found("tvOS", "17.0", now - 24h * 300, true);
    const ScanItem otherTV = found("tvOS", "16.0", now - 24h * 301, true);
    const ScanItem watch = found("watchOS", "10.0", now - 24h * 200, true);
    const ScanItem oldest = found("iOS", "iPhone15,2 17.5 (21F79)", now - 24h * 3, false);
    const ScanItem newest = found("iOS", "16.0 (20A362)", now - 24h, true);
    const ScanItem older = found("iOS", "18.2 (22C152)", now - 24h * 2 - 1s, false);
    const ScanItem second = found("iOS", "18.1 (22B83)", now - 24h * 2, true);
    expectItems(scan<DeviceSupportRule>(),
                {newest, second, older, oldest, watch, tv, otherTV, vision});
}

TEST_F(DeviceSupportTest, ASingleVersionIsKeptHoweverOld) {
    const ScanItem only = found("iOS", "9.0", test::at("2015-09-16T00:00:00Z"), true);
    expectItems(scan<DeviceSupportRule>(), {only});
}

TEST_F(DeviceSupportTest, EqualDatesStayInTheOrderOfNames) {
    const ScanItem ten = found("iOS", "17.10", longAgo, false);
    const ScanItem nine = found("iOS", "17.9", longAgo, true);
    const ScanItem two = found("iOS", "17.2", longAgo, true);
    expectItems(scan<DeviceSupportRule>(), {two, nine, ten});
}

TEST_F(DeviceSupportTest, FilesAndLinksTakeNoPlaceAmongTheTwo) {
    const ScanItem first = found("iOS", "17.2", longAgo, true);
    const ScanItem second = found("iOS", "17.1", longAgo - 24h, true);
    const ScanItem third = found("iOS", "17.0", longAgo - 48h, false);
    home.file("Library/Developer/Xcode/iOS DeviceSupport/18.0", "x");
    home.link("Library/Developer/Xcode/iOS DeviceSupport/18.1", "17.2");
    home.folder("Library/Developer/Xcode/iOS DeviceSupport/.18.2");
    expectItems(scan<DeviceSupportRule>(), {first, second, third});
}

TEST_F(DeviceSupportTest, WhileXcodeRunsTheScanKeepsTheOlderOnesToo) {
    const ScanItem first = found("iOS", "17.2", longAgo, true);
    const ScanItem second = found("iOS", "17.1", longAgo - 24h, true);
    ScanItem third = found("iOS", "17.0", longAgo - 48h, false);
    launch("com.apple.dt.Xcode");
    third.decision = Decision::keep;
    third.reason = "Xcode is running. Quit it, then scan again to clean this.";
    third.inUseBy = "Xcode";
    expectItems(DiskScanner::applyInUseAndExclusions(scan<DeviceSupportRule>(), context.inUse, {}),
                {first, second, third});
}

// Archives

class XcodeArchivesTest : public XcodeTest {
protected:
    ScanItem found(const std::string& day,
                   const std::string& title,
                   Date modified = longAgo) const {
        const URL url = folder(
            fmt::format("Library/Developer/Xcode/Archives/{}/{}.xcarchive", day, title), modified);
        ScanItem expected = item("xcode.archives", url);
        expected.group = "Archives";
        expected.title = title;
        expected.version = day;
        expected.risk = Risk::check;
        expected.decision = Decision::ask;
        expected.reason =
            "Keep archives of builds you shipped: their dSYMs symbolicate crash reports.";
        expected.whatItIs = "An app build created with Product → Archive, including debug symbols.";
        expected.afterEffect = "Moved to the Trash. Crash reports from this build can't be "
                               "symbolicated once it's emptied.";
        expected.method = CleanMethod::trash();
        expected.lastUsed = modified;
        return expected;
    }
};

TEST_F(XcodeArchivesTest, OneItemForEachArchiveOfADay) {
    const ScanItem later = found("2026-01-10", "App");
    const ScanItem evening = found("2026-01-05", "App 05.01.26, 19.00", now - 24h);
    const ScanItem morning = found("2026-01-05", "App 05.01.26, 9.00");
    home.file("Library/Developer/Xcode/Archives/2026-01-05/notes.txt", "x");
    home.folder("Library/Developer/Xcode/Archives/2026-01-07");
    expectItems(scan<XcodeArchivesRule>(), {morning, evening, later});
}

TEST_F(XcodeArchivesTest, OnlyTheExtensionLeavesTheTitle) {
    const ScanItem expected = found("Some day", "App.xcarchive.2");
    expectItems(scan<XcodeArchivesRule>(), {expected});
}

TEST_F(XcodeArchivesTest, NoApplicationOwnsThem) {
    const ScanItem expected = found("2026-01-05", "App");
    launch("com.apple.dt.Xcode");
    expectItems(DiskScanner::applyInUseAndExclusions(scan<XcodeArchivesRule>(), context.inUse, {}),
                {expected});
}

// Caches of Xcode and of its dependency managers

ScanItem xcodeCache(const URL& url) {
    ScanItem expected = item("xcode.caches", url);
    expected.group = "Xcode caches";
    expected.title = "Xcode cache";
    expected.reason = "Cache that Xcode recreates.";
    expected.whatItIs = "Downloaded documentation, package lists and other Xcode caches.";
    expected.afterEffect = "Xcode recreates it as needed.";
    expected.owner = xcode;
    return expected;
}

ScanItem simulatorCaches(const URL& url) {
    ScanItem expected = item("xcode.caches", url);
    expected.group = "Xcode caches";
    expected.title = "Simulator caches";
    expected.reason = "dyld shared caches the Simulator rebuilds.";
    expected.whatItIs = "Shared library caches generated for each simulator runtime.";
    expected.afterEffect = "The first simulator launch per runtime takes a little longer.";
    expected.owner = simulator;
    return expected;
}

ScanItem previews(const URL& url) {
    ScanItem expected = item("xcode.caches", url);
    expected.group = "Xcode caches";
    expected.title = "SwiftUI preview simulators";
    expected.reason = "Preview devices are recreated on demand.";
    expected.whatItIs = "Hidden simulators Xcode uses to render SwiftUI previews.";
    expected.afterEffect = "The next preview takes longer to start.";
    expected.method = CleanMethod::command(
        {"xcrun", {"simctl", "--set", "previews", "delete", "all"}, std::nullopt, true});
    expected.owner = xcode;
    return expected;
}

ScanItem pods(const URL& url) {
    ScanItem expected = item("ios.podCaches", url);
    expected.group = "Dependency caches";
    expected.title = "CocoaPods cache";
    expected.decision = Decision::ask;
    expected.reason = "Regenerates, but every pod downloads again on the next pod install. Worth "
                      "it when space is tight.";
    expected.whatItIs = "Downloaded pod sources reused by every `pod install`.";
    expected.afterEffect = "The next `pod install` in each project downloads its pods again.";
    expected.method =
        CleanMethod::command({"pod", {"cache", "clean", "--all"}, std::nullopt, true});
    return expected;
}

ScanItem prebuilts(const URL& url) {
    ScanItem expected = item("ios.podCaches", url);
    expected.group = "Dependency caches";
    expected.title = "React Native prebuilts";
    expected.decision = Decision::ask;
    expected.reason = "Hermes and React Native prebuilt tarballs. Large re-download on the next "
                      "pod install.";
    expected.whatItIs = "Prebuilt React Native and Hermes binaries downloaded by `pod install`.";
    expected.afterEffect = "The next `pod install` downloads them again.";
    return expected;
}

struct CacheCase {
    const char* name;
    const char* path;
    ScanItem (*expected)(const URL&);
    std::vector<ScanItem> (*scan)(const ScanContext&);
};

void PrintTo(const CacheCase& each, std::ostream* stream) { *stream << each.name; }

/// In the order in which each rule must list them.
const CacheCase caches[] = {
    {"Xcode", "Library/Caches/com.apple.dt.Xcode", xcodeCache, scanWith<XcodeCachesRule>},
    {"Simulators", "Library/Developer/CoreSimulator/Caches", simulatorCaches,
     scanWith<XcodeCachesRule>},
    {"Previews", "Library/Developer/Xcode/UserData/Previews", previews, scanWith<XcodeCachesRule>},
    {"CocoaPods", "Library/Caches/CocoaPods", pods, scanWith<CocoaPodsRule>},
    {"ReactNative", "Library/Caches/ReactNative", prebuilts, scanWith<CocoaPodsRule>},
};

class XcodeCacheTest : public testing::TestWithParam<CacheCase> {};

TEST_P(XcodeCacheTest, IsFoundByItself) {
    const TempHome home;
    const URL url = home.folder(GetParam().path);
    expectItems(GetParam().scan(contextOf(home)), {GetParam().expected(url)});
}

TEST_P(XcodeCacheTest, MayBeAFileOrALinkThatLeadsSomewhere) {
    const TempHome file;
    const URL url = file.file(GetParam().path, "x");
    expectItems(GetParam().scan(contextOf(file)), {GetParam().expected(url)});
    const TempHome link;
    const URL target = link.folder("elsewhere");
    const URL linked = link.link(GetParam().path, target.path());
    expectItems(GetParam().scan(contextOf(link)), {GetParam().expected(linked)});
}

TEST_P(XcodeCacheTest, IsKeptByTheScanWhileItsOwnerRuns) {
    const TempHome home;
    ScanItem expected = GetParam().expected(home.folder(GetParam().path));
    ScanContext context = contextOf(home);
    context.inUse.runningBundleIdentifiers = {"com.apple.dt.Xcode", "com.apple.iphonesimulator"};
    if (expected.owner) {
        expected.decision = Decision::keep;
        expected.reason =
            expected.owner->displayName + " is running. Quit it, then scan again to clean this.";
        expected.inUseBy = expected.owner->displayName;
    }
    expectItems(DiskScanner::applyInUseAndExclusions(GetParam().scan(context), context.inUse, {}),
                {expected});
}

INSTANTIATE_TEST_SUITE_P(All, XcodeCacheTest, testing::ValuesIn(caches), [](const auto& each) {
    return std::string(each.param.name);
});

TEST_F(XcodeTest, CachesComeInTheirOrder) {
    std::vector<ScanItem> expected;
    for (const CacheCase& each : caches)
        expected.push_back(each.expected(home.folder(each.path)));
    std::vector<ScanItem> found = scan<XcodeCachesRule>();
    EXPECT_EQ(found.size(), 3U);
    for (const ScanItem& each : scan<CocoaPodsRule>())
        found.push_back(each);
    expectItems(found, expected);
}

// Other copies of Xcode

constexpr const char* commandLineTools = "/Library/Developer/CommandLineTools";

class ExtraXcodeTest : public XcodeTest {
protected:
    void install(std::initializer_list<std::string> names) const {
        for (const std::string& name : names)
            home.file("Applications/" + name + "/Contents/Info.plist", "x");
    }
    void selector(const std::string& body) const {
        home.tool(".volta/bin/xcode-select", "[ \"$*\" = -p ] || exit 9\n" + body);
    }
    void select(const std::string& activePath) const {
        selector(fmt::format("printf '%s\\n' '{}'", activePath));
    }
    std::string inside(const std::string& application) const {
        return home.path("Applications/" + application + "/Contents/Developer").path();
    }
    std::vector<ScanItem> scanApplications() const {
        return ExtraXcodeRule().scanApplications(home.path("Applications"), context);
    }
    static ScanItem copyAt(const URL& url, const std::string& title, const std::string& active) {
        ScanItem expected = item("xcode.extraInstalls", url);
        expected.group = "Other Xcode installs";
        expected.title = title;
        expected.risk = Risk::check;
        expected.decision = Decision::info;
        expected.reason = "Not the active Xcode (" + active + ").";
        expected.whatItIs = "An additional copy of Xcode, usually 10–40 GB.";
        expected.afterEffect = "Remove it in Finder if you no longer need this version. "
                               "Tidewright never deletes apps.";
        expected.method =
            CleanMethod::manual("Drag " + title + ".app from Applications to the Trash in Finder.");
        return expected;
    }
    ScanItem copy(const std::string& title, const std::string& active) const {
        return copyAt(home.path("Applications/" + title + ".app"), title, active);
    }
};

TEST_F(ExtraXcodeTest, ASingleXcodeIsNeverOfferedAndNothingIsRun) {
    selector("touch \"$(dirname \"$0\")/ran\"");
    for (int folders = 0; folders < 3; ++folders) {
        if (folders == 1)
            home.folder("Applications");
        if (folders == 2)
            install({"Xcode.app", "MyXcodeTool.app", "xcode-old.app", "Xcode-13.APP", "Xcode 12",
                     "Xcode.app.zip", "Xcode-11.app.bak", ".Xcode-10.app", "Utilities/Xcode-9.app",
                     " Xcode-8.app", "Xcode-7.app ", "Simulator.app"});
        expectItems(scanApplications(), {});
        EXPECT_FALSE(context.exists(home.path(".volta/bin/ran")));
    }
    install({"Xcode-beta.app"});
    EXPECT_EQ(titles(scanApplications()).size(), 2U);
    EXPECT_TRUE(context.exists(home.path(".volta/bin/ran")));
}

TEST_F(ExtraXcodeTest, FileInPlaceOfTheFolderGivesNothing) {
    home.file("Applications", "x");
    expectItems(scanApplications(), {});
}

TEST_F(ExtraXcodeTest, TheActiveOneIsLeftOut) {
    install({"Xcode.app", "Xcode-beta.app", "Xcode_15.4.app"});
    const std::string active = inside("Xcode-beta.app");
    select(active);
    expectItems(scanApplications(), {copy("Xcode_15.4", active), copy("Xcode", active)});
}

TEST_F(ExtraXcodeTest, OfTwoTheOtherIsListed) {
    install({"Xcode.app", "Xcode_15.4.app"});
    select(inside("Xcode.app"));
    expectItems(scanApplications(), {copy("Xcode_15.4", inside("Xcode.app"))});
    select(inside("Xcode_15.4.app"));
    expectItems(scanApplications(), {copy("Xcode", inside("Xcode_15.4.app"))});
}

TEST_F(ExtraXcodeTest, TheBundleItselfMayBeTheActivePath) {
    install({"Xcode.app", "Xcode-beta.app"});
    const std::string active = home.path("Applications/Xcode.app").path();
    select(active);
    expectItems(scanApplications(), {copy("Xcode-beta", active)});
}

TEST_F(ExtraXcodeTest, WithAnActivePathOutsideAllAreListed) {
    install({"Xcode.app", "Xcode-beta.app"});
    select(commandLineTools);
    expectItems(scanApplications(),
                {copy("Xcode-beta", commandLineTools), copy("Xcode", commandLineTools)});
    select("/Volumes/Tools" + inside("Xcode.app"));
    EXPECT_EQ(titles(scanApplications()), (std::vector<std::string>{"Xcode-beta", "Xcode"}));
}

TEST_F(ExtraXcodeTest, WithoutAnActivePathAllAreListed) {
    install({"Xcode.app", "Xcode-beta.app"});
    const std::vector<ScanItem> all{copy("Xcode-beta", "unknown"), copy("Xcode", "unknown")};
    context.runner = ShellRunner();
    expectItems(scanApplications(), all);
    context = contextOf(home);
    for (const char* body : {":", "printf ' \\t\\r\\n\\n'", "echo /Applications >&2; exit 2"}) {
        selector(body);
        expectItems(scanApplications(), all);
    }
}

TEST_F(ExtraXcodeTest, ACancelledScanRunsNoTool) {
    install({"Xcode.app", "Xcode-beta.app"});
    select(inside("Xcode.app"));
    CancelSource source;
    source.cancel();
    context.cancel = source.token();
    expectItems(scanApplications(), {copy("Xcode-beta", "unknown"), copy("Xcode", "unknown")});
}

TEST_F(ExtraXcodeTest, OfTheAnswerOnlyTheTrimmedTextCounts) {
    install({"Xcode.app", "Xcode-beta.app"});
    selector(fmt::format("printf ' \\n\\t{}\\r\\n\\n'; exit 3", inside("Xcode.app")));
    expectItems(scanApplications(), {copy("Xcode-beta", inside("Xcode.app"))});
}

TEST_F(ExtraXcodeTest, FilesAndLinksOfTheNameCount) {
    install({"Xcode.app"});
    home.file("Applications/Xcode-file.app", "x");
    home.link("Applications/Xcode-link.app", "Xcode.app");
    select(inside("Xcode.app"));
    EXPECT_EQ(titles(scanApplications()), (std::vector<std::string>{"Xcode-file", "Xcode-link"}));
}

TEST_F(ExtraXcodeTest, NoneCanBeSelected) {
    install({"Xcode.app", "Xcode-beta.app"});
    for (const ScanItem& each : scanApplications()) {
        EXPECT_FALSE(isSelectable(each.decision));
        EXPECT_FALSE(each.method.isExecutable());
    }
}

TEST_F(ExtraXcodeTest, TheFolderIsTheOneOfAllUsers) {
    install({"Xcode.app", "Xcode-beta.app"});
    home.file("home/Applications/Xcode-13.app/Contents/Info.plist", "x");
    home.file("home/Applications/Xcode-12.app/Contents/Info.plist", "x");
    const auto found = withOwnMounts([this]() -> std::string {
        if (chroot(home.url().path().c_str()) != 0)
            return "no other root";
        ScanContext inside;
        inside.home = URL("/home");
        return text(scanWith<ExtraXcodeRule>(inside));
    });
    if (!found)
        GTEST_SKIP() << mountsRefused;
    EXPECT_EQ(*found, text({copyAt(URL("/Applications/Xcode-beta.app"), "Xcode-beta", "unknown"),
                            copyAt(URL("/Applications/Xcode.app"), "Xcode", "unknown")}));
}

} // namespace

} // namespace tidewright::test
