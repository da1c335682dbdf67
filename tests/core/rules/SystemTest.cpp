#include "core/rules/System.h"

#include "core/platform/Directory.h"
#include "core/scan/DiskScanner.h"
#include "tests/support/RuleTesting.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace tidewright::test {

namespace {

using namespace std::chrono_literals;

Date at(std::string_view text) { return parseISO8601(text).value(); }

const Date longAgo = at("2024-01-01T00:00:00Z");

/// An application in the home's own folder, under the name that the system shows.
void install(const TempHome& home, std::string_view name, std::string_view identifier) {
    home.file(fmt::format("Applications/{}/Contents/Info.plist", name),
              fmt::format(R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict>
<key>CFBundleIdentifier</key><string>{}</string>
</dict></plist>
)",
                          identifier));
}

/// What each item of these rules has unless told otherwise.
ScanItem item(std::string ruleID, const std::string& key) {
    return usualItem(Category::system, std::move(ruleID), key);
}

class SystemTest : public RuleTest {
protected:
    SystemTest() { context.settings.oldDownloadDays = 30; }

    template <class Rule>
    ScanItem onlyItem() const {
        const auto items = scan<Rule>();
        EXPECT_EQ(items.size(), 1U) << text(items);
        return items.empty() ? ScanItem() : items.front();
    }
};

// What is left alone

struct LeftAloneSystem {
    std::string name;
    std::vector<ScanItem> (*scan)(const ScanContext&);
    std::vector<std::string> files = {}; ///< all of them old
    std::vector<std::string> folders = {};
    std::vector<std::pair<std::string, std::string>> links = {};
    std::vector<std::pair<std::string, std::string>> applications = {}; ///< names, identifiers
    std::string tmutil = {};
};

void PrintTo(const LeftAloneSystem& each, std::ostream* stream) { *stream << each.name; }

class SystemLeavesAlone : public SystemTest, public testing::WithParamInterface<LeftAloneSystem> {};

TEST_P(SystemLeavesAlone, ThisHome) {
    make(home, GetParam(), "x");
    for (const std::string& file : GetParam().files)
        home.setModified(file, longAgo);
    for (const auto& [name, identifier] : GetParam().applications)
        install(home, name, identifier);
    if (!GetParam().tmutil.empty())
        home.tool(".volta/bin/tmutil", GetParam().tmutil);
    expectItems(GetParam().scan(context), {});
}

const LeftAloneSystem leftAlone[] = {
    {.name = "HomebrewsLookAlikes",
     .scan = scanWith<HomebrewRule>,
     .files = {"Library/Caches/Homebrew2/a.tar.gz", "Library/Homebrew/a.tar.gz",
               ".cache/Homebrew/a.tar.gz"}},
    {.name = "HomebrewLinkThatLeadsNowhere",
     .scan = scanWith<HomebrewRule>,
     .links = {{"Library/Caches/Homebrew", "gone"}}},
    {.name = "EditorsOwnData",
     .scan = scanWith<VSCodeRule>,
     .files = {"Library/Caches/com.microsoft.VSCode/data",
               "Library/Caches/com.microsoft.VSCodeInsiders.ShipIt/update.zip",
               "Library/Application Support/Code/User/settings.json",
               "Library/Application Support/Code/Backups/1/file",
               "Library/Application Support/Code/CachedProfilesData/profile",
               "Library/Application Support/Code/Service Worker/Database/000003.log",
               "Library/Application Support/Code - Insiders/Cache/data"},
     .links = {{"Library/Application Support/Code/Cache", "gone"}}},
    {.name = "BrowsersOwnData",
     .scan = scanWith<BrowserCacheRule>,
     .files = {"Library/Application Support/Google/Chrome/Default/History",
               "Library/Application Support/Firefox/Profiles/a.default/logins.json",
               "Library/Caches/Google/Chrome Canary/data",
               "Library/Caches/com.brave.Browser.nightly/data",
               "Library/Caches/Mozilla Backup/data"},
     .links = {{"Library/Caches/Firefox", "gone"}}},
    {.name = "EmptyLogs", .scan = scanWith<LogsRule>, .folders = {"Library/Logs"}},
    {.name = "OwnAndHiddenLogs",
     .scan = scanWith<LogsRule>,
     .files = {"Library/Logs/Tidewright/run.jsonl", "Library/Logs/.DS_Store"}},
    {.name = "FileInPlaceOfLogs", .scan = scanWith<LogsRule>, .files = {"Library/Logs"}},
    {.name = "CachesThatAreNoFolders",
     .scan = scanWith<AppCachesRule>,
     .files = {"Library/Caches/org.example.Sketcher", "Library/Caches/org.example.Drawer.ShipIt"},
     .folders = {"elsewhere"},
     .links = {{"Library/Caches/org.example.Painter", "../../elsewhere"},
               {"Library/Caches/org.example.Writer.ShipIt", "../../elsewhere"}},
     .applications = {{"Sketcher.app", "org.example.Sketcher"},
                      {"Painter.app", "org.example.Painter"}}},
    {.name = "CachesOfNoInstalledApplication",
     .scan = scanWith<AppCachesRule>,
     .folders = {"Applications/Emptied.app/Contents", "Library/Caches/org.example.Gone",
                 "Library/Caches/org.example.Emptied", "Library/Caches/org.example.Sketcher2",
                 "Library/Caches/org.example", "Library/Caches/org.example.Sketcher.helper",
                 "Library/Caches/org.example.Sketcher ", "Library/Caches/org.example.Sketcher\n",
                 "Library/Caches/a...", "Library/Caches/org.\xff\xfe"},
     .applications = {{"Sketcher.app", "org.example.Sketcher"}}},
    {.name = "CachesWithoutDotOrHidden",
     .scan = scanWith<AppCachesRule>,
     .folders = {"Library/Caches/Sketcher", "Library/Caches/ShipIt", "Library/Caches/.ShipIt",
                 "Library/Caches/.org.example.Painter"},
     .applications = {{"Sketcher.app", "Sketcher"}, {"Painter.app", ".org.example.Painter"}}},
    {.name = "CachesOfTheSystemAndOurOwn",
     .scan = scanWith<AppCachesRule>,
     .folders = {"Library/Caches/com.apple.Safari", "Library/Caches/com.apple.Safari.ShipIt",
                 "Library/Caches/com.tidewright.app"},
     .applications = {{"Safari.app", "com.apple.Safari"},
                      {"Tidewright.app", "com.tidewright.app"}}},
    {.name = "CachesThatAreHandledElsewhere",
     .scan = scanWith<AppCachesRule>,
     .folders = {"Library/Caches/Google", "Library/Caches/Homebrew", "Library/Caches/CocoaPods",
                 "Library/Caches/Yarn", "Library/Caches/node-gyp", "Library/Caches/dotslash",
                 "Library/Caches/ReactNative", "Library/Caches/com.apple.dt.Xcode",
                 "Library/Caches/com.microsoft.VSCode.ShipIt", "Library/Caches/BraveSoftware",
                 "Library/Caches/com.brave.Browser", "Library/Caches/Firefox",
                 "Library/Caches/Mozilla", "Library/Caches/pnpm"},
     .applications = {{"Xcode.app", "com.apple.dt.Xcode"},
                      {"Visual Studio Code.app", "com.microsoft.VSCode"},
                      {"Brave Browser.app", "com.brave.Browser"}}},
    {.name = "EmptyTrash", .scan = scanWith<TrashRule>, .folders = {".Trash"}},
    {.name = "TrashOfOnlyFinderMetadata",
     .scan = scanWith<TrashRule>,
     .files = {".Trash/.DS_Store"}},
    {.name = "FileInPlaceOfTrash", .scan = scanWith<TrashRule>, .files = {".Trash"}},
    {.name = "OldDownloadsThatAreNoInstallers",
     .scan = scanWith<OldDownloadsRule>,
     .files = {"Downloads/notes.pdf", "Downloads/zip", "Downloads/.zip",
               "Downloads/archive.zip.part", "Downloads/archive.zip.", "Downloads/archive.zip ",
               "Downloads/archive.zip\n", "Downloads/dmg.txt", "Downloads/a.7zz",
               "Downloads/a.tar.bz2", "Downloads/movie.mkv", "Downloads/a.dmg\xff",
               "Downloads/a.z\xc4\xb1p", "Downloads/folder/inner.zip", "Desktop/elsewhere.zip",
               "download.zip"}},
    {.name = "FileInPlaceOfDownloads", .scan = scanWith<OldDownloadsRule>, .files = {"Downloads"}},
    {.name = "DockersLookAlikes",
     .scan = scanWith<DockerRule>,
     .files = {"Library/Containers/com.docker.docker2/Data/Docker.raw",
               "Library/Containers/com.docker.helper/Data/file",
               "Library/Group Containers/group.com.docker/settings.json", ".docker/config.json"}},
    {.name = "SnapshotsOfOthers",
     .scan = scanWith<TimeMachineSnapshotsRule>,
     .tmutil = R"(echo "Snapshots for disk /:"
echo com.apple.os.update-0123456789ABCDEF
echo com.apple.timemachine.local
echo com.apple.TimeMachine.2026-02-28-093000.local >&2)"},
    {.name = "NoSnapshotsListed", .scan = scanWith<TimeMachineSnapshotsRule>, .tmutil = ":"},
    {.name = "SnapshotsOfAFailedListing",
     .scan = scanWith<TimeMachineSnapshotsRule>,
     .tmutil = "echo com.apple.TimeMachine.2026-02-28-093000.local; exit 1"},
    {.name = "SnapshotsOfAKilledListing",
     .scan = scanWith<TimeMachineSnapshotsRule>,
     .tmutil = "echo com.apple.TimeMachine.2026-02-28-093000.local; kill -9 $$"},
};

INSTANTIATE_TEST_SUITE_P(All,
                         SystemLeavesAlone,
                         testing::ValuesIn(leftAlone),
                         [](const auto& each) { return each.param.name; });

TEST_F(SystemTest, WithoutTheToolThereAreNoSnapshots) {
    context.runner = ShellRunner();
    expectItems(scan<TimeMachineSnapshotsRule>(), {});
}

TEST_F(SystemTest, ACancelledScanRunsNoTool) {
    home.tool(".volta/bin/tmutil", "echo com.apple.TimeMachine.2026-02-28-093000.local");
    CancelSource source;
    source.cancel();
    context.cancel = source.token();
    expectItems(scan<TimeMachineSnapshotsRule>(), {});
}

TEST_F(SystemTest, FoldersThatMayNotBeListedGiveNothing) {
    context.now = currentDate() + 24h * 40;
    home.setMode("", 0755);
    for (const char* folder : {".Trash", "Downloads", "Library/Logs", "Library/Caches"}) {
        home.file(fmt::format("{}/old.example.zip", folder));
        home.folder(fmt::format("{}/org.example.Gone.ShipIt", folder));
        home.setMode(folder, 0700);
    }
    const auto count = [this] {
        return std::to_string(scan<TrashRule>().size() + scan<OldDownloadsRule>().size() +
                              scan<LogsRule>().size() + scan<AppCachesRule>().size());
    };
    EXPECT_EQ(count(), "4");
    for (const char* folder : {".Trash", "Downloads", "Library/Logs", "Library/Caches"})
        home.setMode(folder, 0);
    EXPECT_EQ(asOrdinaryUser(count), "0");
}

// What is found

TEST_F(SystemTest, HomebrewCleansByItself) {
    home.file("Library/Caches/Homebrew/downloads/wget.tar.gz");
    ScanItem expected = item("system.homebrew", home.path("Library/Caches/Homebrew").path());
    expected.group = "Homebrew";
    expected.title = "Homebrew downloads";
    expected.urls = at({"Library/Caches/Homebrew"});
    expected.reason = "Old bottles and downloads Homebrew keeps after upgrades.";
    expected.whatItIs = "Installer archives for packages that are already installed or upgraded.";
    expected.afterEffect = "Nothing; installed packages keep working.";
    expected.method =
        CleanMethod::command({"brew", {"cleanup", "--prune=all"}, std::nullopt, true});
    expectItems(scan<HomebrewRule>(), {expected});
}

ScanItem editorUpdates(const TempHome& home) {
    const URL url = home.path("Library/Caches/com.microsoft.VSCode.ShipIt");
    ScanItem expected = item("system.vscode", url.path());
    expected.group = "Visual Studio Code";
    expected.title = "Update leftovers";
    expected.urls = {url};
    expected.reason = "Downloaded updates that were already installed.";
    expected.whatItIs = "Files left by VS Code's updater.";
    expected.afterEffect = "Nothing.";
    expected.owner = AppMatcher{"Visual Studio Code", {"com.microsoft.VSCode"}, {}};
    return expected;
}

ScanItem editorCaches(std::vector<URL> urls) {
    ScanItem expected = item("system.vscode", urls.front().path());
    expected.group = "Visual Studio Code";
    expected.title = "Editor caches";
    expected.urls = std::move(urls);
    expected.reason = "Caches and logs only. Your settings, extensions and workspaces are kept.";
    expected.whatItIs = "Compiled code caches, cached extension downloads and logs.";
    expected.afterEffect = "VS Code starts a bit slower once while it rebuilds caches.";
    expected.owner = AppMatcher{"Visual Studio Code", {"com.microsoft.VSCode"}, {}};
    return expected;
}

class EditorCachesTest : public SystemTest {
protected:
    EditorCachesTest() {
        home.folder("Library/Caches/com.microsoft.VSCode.ShipIt");
        for (const char* name : {"GPUCache", "Service Worker/CacheStorage", "logs", "User",
                                 "CachedExtensionVSIXs", "CachedData", "Cache"})
            home.folder(fmt::format("Library/Application Support/Code/{}", name));
    }
    const std::vector<URL> all =
        at({"Library/Application Support/Code/Cache", "Library/Application Support/Code/CachedData",
            "Library/Application Support/Code/CachedExtensionVSIXs",
            "Library/Application Support/Code/logs",
            "Library/Application Support/Code/Service Worker/CacheStorage",
            "Library/Application Support/Code/GPUCache"});
};

TEST_F(EditorCachesTest, UpdatesAndAllCachesInTheirOrder) {
    expectItems(scan<VSCodeRule>(), {editorUpdates(home), editorCaches(all)});
}

TEST_F(EditorCachesTest, WhileTheEditorRunsTheRuleKeepsTheCachesOnly) {
    launch("com.microsoft.VSCode");
    ScanItem kept = editorCaches(all);
    kept.decision = Decision::keep;
    kept.reason = "Visual Studio Code is open. Quit it to clean these.";
    kept.inUseBy = "Visual Studio Code";
    expectItems(scan<VSCodeRule>(), {editorUpdates(home), kept});
}

TEST_F(EditorCachesTest, WhileTheEditorRunsTheScanKeepsTheUpdates) {
    launch("com.microsoft.VSCode");
    const auto items = DiskScanner::applyInUseAndExclusions(scan<VSCodeRule>(), context.inUse, {});
    ScanItem kept = editorUpdates(home);
    kept.decision = Decision::keep;
    kept.reason = "Visual Studio Code is running. Quit it, then scan again to clean this.";
    kept.inUseBy = "Visual Studio Code";
    ASSERT_EQ(items.size(), 2U);
    expectItems({items.front()}, {kept});
    EXPECT_EQ(items.back().reason, "Visual Studio Code is open. Quit it to clean these.");
}

TEST_F(EditorCachesTest, AnotherEditorKeepsNothing) {
    launch("com.microsoft.VSCodeInsiders");
    launch("com.vscodium");
    expectItems(scan<VSCodeRule>(), {editorUpdates(home), editorCaches(all)});
}

TEST_F(SystemTest, OneEditorCacheIsEnough) {
    home.folder("Library/Application Support/Code/GPUCache");
    expectItems(scan<VSCodeRule>(),
                {editorCaches(at({"Library/Application Support/Code/GPUCache"}))});
}

ScanItem browserCache(std::string name, std::string identifier, std::vector<URL> urls) {
    ScanItem expected = item("system.browserCaches", urls.front().path());
    expected.group = "Browser caches";
    expected.title = name;
    expected.urls = std::move(urls);
    expected.reason = "Web cache only. History, passwords and logins live elsewhere and are kept.";
    expected.whatItIs = "Images and scripts cached from websites you visited.";
    expected.afterEffect = "Sites load a little slower the first time you revisit them.";
    expected.owner = AppMatcher{std::move(name), {std::move(identifier)}, {}};
    return expected;
}

class BrowserCachesTest : public SystemTest {
protected:
    BrowserCachesTest() {
        for (const char* name :
             {"Mozilla", "Firefox", "com.brave.Browser", "BraveSoftware", "Google/Chrome"})
            home.folder(fmt::format("Library/Caches/{}", name));
    }
    const ScanItem chrome =
        browserCache("Google Chrome", "com.google.Chrome", at({"Library/Caches/Google/Chrome"}));
    const ScanItem brave =
        browserCache("Brave",
                     "com.brave.Browser",
                     at({"Library/Caches/BraveSoftware", "Library/Caches/com.brave.Browser"}));
    const ScanItem firefox = browserCache(
        "Firefox", "org.mozilla.firefox", at({"Library/Caches/Firefox", "Library/Caches/Mozilla"}));
};

TEST_F(BrowserCachesTest, OneItemForEachBrowser) {
    expectItems(scan<BrowserCacheRule>(), {chrome, brave, firefox});
}

TEST_F(BrowserCachesTest, OnlyTheBrowserThatRunsIsKept) {
    launch("org.mozilla.firefox");
    launch("com.brave.Browser.nightly");
    context.inUse.processCommandLines = {"/Applications/Google Chrome.app/com.google.Chrome"};
    ScanItem kept = firefox;
    kept.decision = Decision::keep;
    kept.reason = "Firefox is open. Quit it to clean its cache.";
    kept.inUseBy = "Firefox";
    expectItems(scan<BrowserCacheRule>(), {chrome, brave, kept});
}

TEST_F(SystemTest, OneFolderOfABrowserIsEnough) {
    home.folder("Library/Caches/com.brave.Browser");
    expectItems(scan<BrowserCacheRule>(), {browserCache("Brave", "com.brave.Browser",
                                                        at({"Library/Caches/com.brave.Browser"}))});
}

TEST_F(SystemTest, LogsAreAllButOurOwn) {
    for (const char* name : {"app 10.log", "app 2.log", "Tidewright.log", ".hidden"})
        home.file(fmt::format("Library/Logs/{}", name));
    for (const char* name : {"Tidewright", "Tidewright 2", "TidewrightHelper"})
        home.folder(fmt::format("Library/Logs/{}", name));
    home.link("Library/Logs/zzz", "../../Documents");
    ScanItem expected = item("system.logs", home.path("Library/Logs/app 2.log").path());
    expected.group = "Logs";
    expected.title = "App logs";
    expected.urls =
        at({"Library/Logs/app 2.log", "Library/Logs/app 10.log", "Library/Logs/Tidewright 2",
            "Library/Logs/Tidewright.log", "Library/Logs/TidewrightHelper", "Library/Logs/zzz"});
    expected.reason = "Log files only.";
    expected.whatItIs = "Logs and crash reports written by apps in ~/Library/Logs. Tidewright's "
                        "own audit logs are kept.";
    expected.afterEffect = "Nothing; apps start new logs.";
    expectItems(scan<LogsRule>(), {expected});
}

TEST_F(SystemTest, TheIdOfTheLogsFollowsTheirFirstEntry) {
    home.folder("Library/Logs/Reports");
    EXPECT_EQ(onlyItem<LogsRule>().id, "system.logs:" + home.path("Library/Logs/Reports").path());
    home.folder("Library/Logs/App");
    EXPECT_EQ(onlyItem<LogsRule>().id, "system.logs:" + home.path("Library/Logs/App").path());
}

ScanItem appCache(const URL& url, std::string name, std::string identifier) {
    ScanItem expected = item("system.appCaches", url.path());
    expected.group = "App caches";
    expected.title = name;
    expected.urls = {url};
    expected.reason = "Cache folder of " + name + "; the app recreates it.";
    expected.whatItIs = "Files an app stored in ~/Library/Caches to speed itself up.";
    expected.afterEffect = "The app recreates what it needs; it may be a little slower at first.";
    expected.owner = AppMatcher{std::move(name), {std::move(identifier)}, {}};
    expected.hideBelowBytes = 50'000'000;
    return expected;
}

ScanItem updater(const URL& url, const std::string& name, std::string identifier) {
    ScanItem expected = appCache(url, name, std::move(identifier));
    expected.title = name + " update leftovers";
    expected.reason = "Downloaded updates that were already installed.";
    expected.hideBelowBytes = 20'000'000;
    return expected;
}

TEST_F(SystemTest, CachesAndUpdatersOfInstalledApplications) {
    install(home, "Sketcher.app", "org.example.Sketcher");
    install(home, "Sketch.application.app", "org.example.Plain");
    const URL sketcher = home.folder("Library/Caches/org.example.Sketcher");
    const URL shipIt = home.folder("Library/Caches/org.example.Sketcher.ShipIt");
    const URL plain = home.folder("Library/Caches/org.example.Plain");
    expectItems(scan<AppCachesRule>(), {appCache(plain, "Sketchlication", "org.example.Plain"),
                                        appCache(sketcher, "Sketcher", "org.example.Sketcher"),
                                        updater(shipIt, "Sketcher", "org.example.Sketcher")});
}

TEST_F(SystemTest, UpdatersWithoutAnApplicationGoByTheirIdentifier) {
    const std::vector<std::string> identifiers{"com.app.application", "com.tidewright.app",
                                               "line\nbreak", "nodot", "org.\xff"};
    std::vector<ScanItem> expected;
    for (const std::string& each : identifiers)
        expected.push_back(updater(home.folder("Library/Caches/" + each + ".ShipIt"), each, each));
    std::vector<ScanItem> found = scan<AppCachesRule>();
    std::ranges::sort(found, {}, &ScanItem::id);
    expectItems(found, expected);
}

TEST_F(SystemTest, WhileAnApplicationRunsTheRuleKeepsItsCacheButNotItsUpdater) {
    install(home, "Sketcher.app", "org.example.Sketcher");
    install(home, "Painter.app", "org.example.Painter");
    const URL sketcher = home.folder("Library/Caches/org.example.Sketcher");
    const URL shipIt = home.folder("Library/Caches/org.example.Sketcher.ShipIt");
    const URL painter = home.folder("Library/Caches/org.example.Painter");
    launch("org.example.Sketcher");
    context.inUse.processCommandLines = {"org.example.Painter"};
    const ScanItem idle = appCache(painter, "Painter", "org.example.Painter");
    ScanItem kept = appCache(sketcher, "Sketcher", "org.example.Sketcher");
    kept.decision = Decision::keep;
    kept.reason = "Sketcher is open. Quit it to clean its cache.";
    kept.inUseBy = "Sketcher";
    ScanItem left = updater(shipIt, "Sketcher", "org.example.Sketcher");
    expectItems(scan<AppCachesRule>(), {idle, kept, left});

    left.decision = Decision::keep;
    left.reason = "Sketcher is running. Quit it, then scan again to clean this.";
    left.inUseBy = "Sketcher";
    expectItems(DiskScanner::applyInUseAndExclusions(scan<AppCachesRule>(), context.inUse, {}),
                {idle, kept, left});
}

TEST_F(SystemTest, SmallCachesAndUpdatersAreNotShown) {
    install(home, "Sketcher.app", "org.example.Sketcher");
    home.folder("Library/Caches/org.example.Sketcher");
    home.folder("Library/Caches/org.example.Sketcher.ShipIt");
    const auto shown = [this](Int64 bytes) {
        auto items = scan<AppCachesRule>();
        for (ScanItem& each : items)
            each.sizeBytes = bytes;
        return DiskScanner::filtered(std::move(items)).size();
    };
    EXPECT_EQ(shown(19'999'999), 0U);
    EXPECT_EQ(shown(20'000'000), 1U);
    EXPECT_EQ(shown(30'000'000), 1U);
    EXPECT_EQ(shown(49'999'999), 1U);
    EXPECT_EQ(shown(50'000'000), 2U);
}

TEST_F(SystemTest, TheTrashIsAllItsEntriesAsTheFileSystemListsThem) {
    for (const char* name :
         {".DS_Store", ".hidden", "...", "a\nb", "\xff\xfe", "b.txt", "DS_Store", ".DS_Store 2"})
        home.file(fmt::format(".Trash/{}", name));
    home.file(".Trash/folder/inner");
    home.link(".Trash/link", "../Documents");
    ScanItem expected = item("system.trash", "trash");
    expected.group = "Trash";
    expected.title = "Trash (9 items)";
    const auto entries = readDirectory(home.path(".Trash")).value();
    for (const DirectoryEntry& entry : entries)
        if (entry.name != ".DS_Store")
            expected.urls.push_back(home.path(".Trash/" + entry.name));
    expected.risk = Risk::check;
    expected.decision = Decision::ask;
    expected.reason = "Files you already deleted still take space until the Trash is emptied.";
    expected.whatItIs = "Everything currently in your Trash.";
    expected.afterEffect = "Permanently deleted. This can't be undone.";
    expectItems(scan<TrashRule>(), {expected});
}

TEST_F(SystemTest, OneEntryInTheTrashIsSaidInThePlural) {
    home.file(".Trash/a.txt");
    EXPECT_EQ(onlyItem<TrashRule>().title, "Trash (1 items)");
}

TEST_F(SystemTest, DockerIsForInformation) {
    home.file("Library/Containers/com.docker.docker/Data/Docker.raw");
    const URL url = home.path("Library/Containers/com.docker.docker");
    ScanItem expected = item("system.docker", url.path());
    expected.group = "Docker";
    expected.title = "Docker disk image";
    expected.urls = {url};
    expected.risk = Risk::check;
    expected.decision = Decision::info;
    expected.reason = "Docker manages this disk itself. Deleting files here would corrupt it.";
    expected.whatItIs = "The virtual disk holding Docker images, containers and volumes.";
    expected.afterEffect = "Use Docker's own cleanup to shrink it.";
    expected.method = CleanMethod::manual("Run `docker system prune -a --volumes`, or use Docker "
                                          "Desktop → Troubleshoot → Clean / Purge data.");
    expectItems(scan<DockerRule>(), {expected});
}

TEST_F(SystemTest, SnapshotsAreCountedByTheirMark) {
    home.tool(".volta/bin/tmutil", R"([ "$*" = "listlocalsnapshots /" ] || exit 2
echo "Snapshots for disk /:"
echo
echo com.apple.TimeMachine.2026-02-28-093000.local
echo com.apple.os.update-0123456789ABCDEF
printf 'com.apple.TimeMachine.2026-03-01-093000.local\r\n'
printf 'a com.apple.TimeMachine b com.apple.TimeMachine c')");
    ScanItem expected = item("system.localSnapshots", "snapshots");
    expected.group = "Time Machine";
    expected.title = "3 local snapshots";
    expected.risk = Risk::low;
    expected.decision = Decision::ask;
    expected.reason = "Shown as \"System Data\" in Settings. macOS removes them on its own when "
                      "space runs low, but you can thin them now.";
    expected.whatItIs = "Hourly local Time Machine snapshots kept until the next backup completes.";
    expected.afterEffect = "You can't restore from these local snapshots; your Time Machine "
                           "backups are not affected.";
    expected.method = CleanMethod::command(
        {"tmutil", {"thinlocalsnapshots", "/", "999999999999", "4"}, std::nullopt, false});
    expected.hideBelowBytes = 0;
    expectItems(scan<TimeMachineSnapshotsRule>(), {expected});
    EXPECT_EQ(DiskScanner::filtered(scan<TimeMachineSnapshotsRule>()).size(), 1U);
}

// Ages of downloads

/// The date that counts is set by these tests as the modification date, which is what there is
/// where the system doesn't keep when a file came into its folder.
class OldDownloadsTest : public SystemTest {
protected:
    void SetUp() override {
        if (dateAddedToFolder(home.file("Documents/probe")))
            GTEST_SKIP() << "this system keeps the date added, which can't be set";
    }
    void download(const std::string& name, Date date) const {
        home.file("Downloads/" + name, "x");
        home.setModified("Downloads/" + name, date);
    }
    ScanItem expected(const std::string& name, int days, Date date) const {
        const URL url = home.path("Downloads/" + name);
        ScanItem expected = item("system.oldDownloads", url.path());
        expected.group = "Old downloads";
        expected.title = name;
        expected.urls = {url};
        expected.risk = Risk::check;
        expected.decision = Decision::ask;
        expected.reason = fmt::format(
            "Downloaded {} days ago. Installers and archives are rarely needed after use.", days);
        expected.whatItIs = "An installer or archive in your Downloads folder.";
        expected.afterEffect = "Moved to the Trash, so you can still put it back.";
        expected.method = CleanMethod::trash();
        expected.lastUsed = date;
        expected.hideBelowBytes = 10'000'000;
        return expected;
    }
    void expectFound(std::vector<ScanItem> items) const {
        std::vector<ScanItem> found = scan<OldDownloadsRule>();
        std::ranges::sort(found, {}, &ScanItem::id);
        std::ranges::sort(items, {}, &ScanItem::id);
        expectItems(found, items);
    }
};

TEST_F(OldDownloadsTest, EveryInstallerInAnySpelling) {
    const Date date = now - 24h * 100;
    std::vector<ScanItem> items;
    for (const char* name :
         {"a.dmg", "a.pkg",    "a.zip",       "a.xip",      "a.apk",    "a.aab",   "a.ipa",
          "a.iso", "a.tar",    "a.gz",        "a.tgz",      "a.7z",     "a.rar",   "b.ZIP",
          "c.DmG", "d.tar.gz", ".hidden.zip", "e \n f.zip", "\xff.zip", "....zip", " .zip"}) {
        download(name, date);
        items.push_back(expected(name, 100, date));
    }
    expectFound(items);
}

TEST_F(OldDownloadsTest, FoldersCountAndLinksCountByThemselves) {
    const Date old = now - 24h * 40;
    home.file("Downloads/Bundle.zip/inner.zip");
    home.setModified("Downloads/Bundle.zip", old);
    home.file("young");
    home.link("Downloads/old link.dmg", "../young");
    home.setModified("Downloads/old link.dmg", old);
    home.link("Downloads/dangling.dmg", "gone");
    home.setModified("Downloads/dangling.dmg", old);
    home.file("old", "x");
    home.setModified("old", longAgo);
    home.link("Downloads/young link.dmg", "../old");
    home.setModified("Downloads/young link.dmg", now - 24h);
    expectFound({expected("Bundle.zip", 40, old), expected("dangling.dmg", 40, old),
                 expected("old link.dmg", 40, old)});
}

struct Age {
    const char* downloaded;
    const char* scanned;
    int limit;
    std::optional<int> days; ///< absent: left alone
};

// In Berlin clocks go forward on 2026-03-29 and back on 2025-10-26: counted in times of day, a day
// has 23 or 25 hours there.
const Age ages[] = {
    {"2026-01-30T12:00:00Z", "2026-03-01T12:00:00Z", 30, 30},
    {"2026-01-30T12:00:01Z", "2026-03-01T12:00:00Z", 30, std::nullopt},
    {"2026-01-30T11:59:59Z", "2026-03-01T12:00:00Z", 30, 30},
    {"2026-01-29T12:00:00Z", "2026-03-01T12:00:00Z", 30, 31},
    {"2026-01-31T12:00:00Z", "2026-03-01T12:00:00Z", 30, std::nullopt},
    {"2024-02-29T12:00:00Z", "2026-03-01T12:00:00Z", 731, 731},
    {"1970-01-01T12:00:00Z", "2026-03-01T12:00:00Z", 30, 20513},
    {"2026-03-01T11:59:59Z", "2026-03-01T12:00:00Z", 1, std::nullopt},
    {"2026-03-01T11:59:59Z", "2026-03-01T12:00:00Z", 0, 0},
    {"2026-03-03T12:00:00Z", "2026-03-01T12:00:00Z", 0, std::nullopt},
    {"2027-03-01T12:00:00Z", "2026-03-01T12:00:00Z", 30, std::nullopt},
    {"2026-03-11T11:00:00Z", "2026-04-10T10:00:00Z", 30, 30},
    {"2026-03-11T11:00:01Z", "2026-04-10T10:00:00Z", 30, std::nullopt},
    {"2025-10-11T10:00:00Z", "2025-11-10T11:00:00Z", 30, 30},
    {"2025-10-11T10:30:00Z", "2025-11-10T11:00:00Z", 30, std::nullopt},
};

TEST_F(OldDownloadsTest, AgesAreWholeDaysOfTheUsersCalendar) {
    const InBerlin inBerlin;
    for (const Age& age : ages) {
        SCOPED_TRACE(fmt::format("{} to {}", age.downloaded, age.scanned));
        const Date date = test::at(age.downloaded);
        download("a.dmg", date);
        context.now = test::at(age.scanned);
        context.settings.oldDownloadDays = age.limit;
        expectFound(age.days ? std::vector{expected("a.dmg", *age.days, date)}
                             : std::vector<ScanItem>());
    }
}

} // namespace

} // namespace tidewright::test
