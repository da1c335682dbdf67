#include "core/rules/System.h"

#include "core/platform/Applications.h"
#include "core/platform/Directory.h"
#include "core/platform/StandardFolders.h"
#include "core/rules/Folders.h"
#include "core/rules/ItemKind.h"
#include "core/support/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace tidewright {

namespace {

using namespace std::chrono_literals;
using std::string_view;

// Homebrew

constexpr string_view homebrewFolder = "Library/Caches/Homebrew";
constexpr ItemKind homebrew{
    .category = Category::system,
    .group = "Homebrew",
    .title = "Homebrew downloads",
    .risk = Risk::safe,
    .decision = Decision::clean,
    .reason = "Old bottles and downloads Homebrew keeps after upgrades.",
    .whatItIs = "Installer archives for packages that are already installed or upgraded.",
    .afterEffect = "Nothing; installed packages keep working.",
};
const ShellCommand homebrewCleanup{.tool = "brew",
                                   .arguments = {"cleanup", "--prune=all"},
                                   .workingDirectory = std::nullopt,
                                   .fallbackToRemove = true};

// Visual Studio Code

constexpr string_view editorUpdatesFolder = "Library/Caches/com.microsoft.VSCode.ShipIt";
constexpr ItemKind editorUpdates{
    .category = Category::system,
    .group = "Visual Studio Code",
    .title = "Update leftovers",
    .risk = Risk::safe,
    .decision = Decision::clean,
    .reason = "Downloaded updates that were already installed.",
    .whatItIs = "Files left by VS Code's updater.",
    .afterEffect = "Nothing.",
};

constexpr string_view editorFolder = "Library/Application Support/Code";
constexpr std::array<string_view, 6> editorCacheFolders{
    "Cache",   "CachedData", "CachedExtensionVSIXs", "logs", "Service Worker/CacheStorage",
    "GPUCache"};
constexpr ItemKind editorCaches{
    .category = Category::system,
    .group = "Visual Studio Code",
    .title = "Editor caches",
    .risk = Risk::safe,
    .decision = Decision::clean,
    .reason = "Caches and logs only. Your settings, extensions and workspaces are kept.",
    .whatItIs = "Compiled code caches, cached extension downloads and logs.",
    .afterEffect = "VS Code starts a bit slower once while it rebuilds caches.",
};
constexpr string_view editorIsOpen = "Visual Studio Code is open. Quit it to clean these.";

// Browsers, and all other applications that keep a cache

constexpr string_view isOpen = " is open. Quit it to clean its cache."; // behind the name

struct Browser {
    const AppMatcher* matcher = nullptr;
    std::array<string_view, 2> folders = {}; ///< an empty one is none
};
constexpr std::array browsers{
    Browser{&AppMatcher::chrome, {"Library/Caches/Google/Chrome"}},
    Browser{&AppMatcher::brave,
            {"Library/Caches/BraveSoftware", "Library/Caches/com.brave.Browser"}},
    Browser{&AppMatcher::firefox, {"Library/Caches/Firefox", "Library/Caches/Mozilla"}},
};
constexpr ItemKind browserCache{
    .category = Category::system,
    .group = "Browser caches",
    .risk = Risk::safe,
    .decision = Decision::clean,
    .reason = "Web cache only. History, passwords and logins live elsewhere and are kept.",
    .whatItIs = "Images and scripts cached from websites you visited.",
    .afterEffect = "Sites load a little slower the first time you revisit them.",
};

constexpr string_view cachesFolder = "Library/Caches";
// The business of other rules.
constexpr std::array<string_view, 14> handledElsewhere{
    "Google",
    "Homebrew",
    "CocoaPods",
    "Yarn",
    "node-gyp",
    "dotslash",
    "ReactNative",
    "com.apple.dt.Xcode",
    "com.microsoft.VSCode.ShipIt",
    "BraveSoftware",
    "com.brave.Browser",
    "Firefox",
    "Mozilla",
    "pnpm",
};
constexpr string_view systemPrefix = "com.apple.";
constexpr string_view updaterEnding = ".ShipIt";
constexpr string_view applicationEnding = ".app";
constexpr ItemKind appCache{
    .category = Category::system,
    .group = "App caches",
    .risk = Risk::safe,
    .decision = Decision::clean,
    .whatItIs = "Files an app stored in ~/Library/Caches to speed itself up.",
    .afterEffect = "The app recreates what it needs; it may be a little slower at first.",
};
constexpr auto updaterTitle = "{} update leftovers";
constexpr string_view updaterReason = "Downloaded updates that were already installed.";
constexpr Int64 updaterHideBelowBytes = 20'000'000;
constexpr auto cacheReason = "Cache folder of {}; the app recreates it.";
constexpr Int64 cacheHideBelowBytes = 50'000'000;

// Logs

constexpr string_view logsFolder = "Library/Logs";
constexpr string_view ownLogsName = "Tidewright";
constexpr ItemKind logs{
    .category = Category::system,
    .group = "Logs",
    .title = "App logs",
    .risk = Risk::safe,
    .decision = Decision::clean,
    .reason = "Log files only.",
    .whatItIs = "Logs and crash reports written by apps in ~/Library/Logs. Tidewright's own audit "
                "logs are kept.",
    .afterEffect = "Nothing; apps start new logs.",
};

// Trash

constexpr string_view trashFolder = ".Trash";
constexpr string_view finderMetadataName = ".DS_Store";
constexpr ItemKind trash{
    .category = Category::system,
    .group = "Trash",
    .risk = Risk::check,
    .decision = Decision::ask,
    .reason = "Files you already deleted still take space until the Trash is emptied.",
    .whatItIs = "Everything currently in your Trash.",
    .afterEffect = "Permanently deleted. This can't be undone.",
};
constexpr auto trashTitle = "Trash ({} items)"; // also for one
constexpr const char* trashKey = "trash";

// Old downloads

constexpr string_view downloadsFolder = "Downloads";
constexpr std::array<string_view, 13> installerExtensions{
    "dmg", "pkg", "zip", "xip", "apk", "aab", "ipa", "iso", "tar", "gz", "tgz", "7z", "rar"};
constexpr ItemKind oldDownload{
    .category = Category::system,
    .group = "Old downloads",
    .risk = Risk::check,
    .decision = Decision::ask,
    .whatItIs = "An installer or archive in your Downloads folder.",
    .afterEffect = "Moved to the Trash, so you can still put it back.",
};
constexpr auto downloadReason =
    "Downloaded {} days ago. Installers and archives are rarely needed after use.";
constexpr Int64 downloadHideBelowBytes = 10'000'000;

// Docker

constexpr string_view dockerFolder = "Library/Containers/com.docker.docker";
constexpr ItemKind docker{
    .category = Category::system,
    .group = "Docker",
    .title = "Docker disk image",
    .risk = Risk::check,
    .decision = Decision::info,
    .reason = "Docker manages this disk itself. Deleting files here would corrupt it.",
    .whatItIs = "The virtual disk holding Docker images, containers and volumes.",
    .afterEffect = "Use Docker's own cleanup to shrink it.",
};
constexpr const char* dockerAdvice =
    "Run `docker system prune -a --volumes`, or use Docker Desktop "
    "→ Troubleshoot → Clean / Purge data.";

// Local snapshots of Time Machine

const ShellCommand snapshotListing{.tool = "tmutil",
                                   .arguments = {"listlocalsnapshots", "/"},
                                   .workingDirectory = std::nullopt,
                                   .fallbackToRemove = false};
constexpr Duration snapshotListingTimeout = 15s;
constexpr string_view snapshotMark = "com.apple.TimeMachine";
constexpr ItemKind snapshots{
    .category = Category::system,
    .group = "Time Machine",
    .risk = Risk::low,
    .decision = Decision::ask,
    .reason = "Shown as \"System Data\" in Settings. macOS removes them on its own when space runs "
              "low, but you can thin them now.",
    .whatItIs = "Hourly local Time Machine snapshots kept until the next backup completes.",
    .afterEffect = "You can't restore from these local snapshots; your Time Machine backups are "
                   "not affected.",
};
constexpr auto snapshotsTitle = "{} local snapshots"; // also for one
constexpr const char* snapshotsKey = "snapshots";
const ShellCommand snapshotThinning{.tool = "tmutil",
                                    .arguments = {"thinlocalsnapshots", "/", "999999999999", "4"},
                                    .workingDirectory = std::nullopt,
                                    .fallbackToRemove = false};
constexpr Int64 snapshotsHideBelowBytes = 0; // their size isn't known

void keepWhileOwnerIsOpen(ScanItem& item, const ScanContext& context) {
    if (item.owner && context.inUse.isRunning(*item.owner))
        item.keep(fmt::format("{}{}", item.owner->displayName, isOpen), item.owner->displayName);
}

ScanItem appCacheItem(const std::string& ruleID,
                      const URL& folder,
                      std::string title,
                      std::string reason,
                      AppMatcher owner) {
    ScanItem::Parts parts = partsOf(appCache, ruleID, {folder});
    parts.title = std::move(title);
    parts.reason = std::move(reason);
    parts.owner = std::move(owner);
    return ScanItem::make(std::move(parts));
}

std::string appName(const InstalledApplication& application) {
    return removing(applicationEnding, application.displayName);
}

/// Whether the application runs is for the scan to find out, by the item's owner.
ScanItem updaterItem(const std::string& ruleID,
                     const URL& folder,
                     const std::string& identifier,
                     const URL& home) {
    const auto application = applicationWithBundleIdentifier(identifier, home);
    const std::string name = application ? appName(*application) : identifier;
    ScanItem item = appCacheItem(ruleID, folder, fmt::format(updaterTitle, name),
                                 std::string(updaterReason), {name, {identifier}, {}});
    item.hideBelowBytes = updaterHideBelowBytes;
    return item;
}

std::optional<ScanItem> cacheItem(const std::string& ruleID,
                                  const URL& folder,
                                  const std::string& identifier,
                                  const ScanContext& context) {
    const auto application = applicationWithBundleIdentifier(identifier, context.home);
    if (!application)
        return std::nullopt;
    const std::string name = appName(*application);
    ScanItem item = appCacheItem(ruleID, folder, name, fmt::format(cacheReason, name),
                                 {name, {identifier}, {}});
    item.hideBelowBytes = cacheHideBelowBytes;
    keepWhileOwnerIsOpen(item, context);
    return item;
}

bool isLeftToOthers(string_view cacheName) {
    return std::ranges::find(handledElsewhere, cacheName) != handledElsewhere.end() ||
           cacheName.starts_with(systemPrefix) || cacheName == ownBundleIdentifier;
}

bool isInstaller(const URL& file) {
    const std::string fileExtension = lowercasedASCII(file.pathExtension());
    return std::ranges::find(installerExtensions, fileExtension) != installerExtensions.end();
}

} // namespace

std::vector<ScanItem> HomebrewRule::scan(const ScanContext& context) const {
    const URL folder = context.path(homebrewFolder);
    if (!context.exists(folder))
        return {};
    ScanItem::Parts parts = partsOf(homebrew, id, {folder});
    parts.method = CleanMethod::command(homebrewCleanup);
    return {ScanItem::make(std::move(parts))};
}

std::vector<ScanItem> VSCodeRule::scan(const ScanContext& context) const {
    std::vector<ScanItem> items;
    const URL updates = context.path(editorUpdatesFolder);
    if (context.exists(updates)) {
        ScanItem::Parts parts = partsOf(editorUpdates, id, {updates});
        parts.owner = AppMatcher::vsCode;
        items.push_back(ScanItem::make(std::move(parts)));
    }
    std::vector<URL> caches =
        existingPaths(context, context.path(editorFolder), editorCacheFolders);
    if (caches.empty())
        return items;
    ScanItem::Parts parts = partsOf(editorCaches, id, std::move(caches));
    parts.owner = AppMatcher::vsCode;
    ScanItem item = ScanItem::make(std::move(parts));
    if (context.inUse.isRunning(AppMatcher::vsCode))
        item.keep(std::string(editorIsOpen), AppMatcher::vsCode.displayName);
    items.push_back(std::move(item));
    return items;
}

std::vector<ScanItem> BrowserCacheRule::scan(const ScanContext& context) const {
    std::vector<ScanItem> items;
    for (const Browser& browser : browsers) {
        std::vector<URL> caches = existingPaths(context, context.home, browser.folders);
        if (caches.empty())
            continue;
        ScanItem::Parts parts = partsOf(browserCache, id, std::move(caches));
        parts.title = browser.matcher->displayName;
        parts.owner = *browser.matcher;
        items.push_back(ScanItem::make(std::move(parts)));
        keepWhileOwnerIsOpen(items.back(), context);
    }
    return items;
}

std::vector<ScanItem> LogsRule::scan(const ScanContext& context) const {
    std::vector<URL> entries = context.children(context.path(logsFolder));
    std::erase_if(entries, [](const URL& url) { return url.lastPathComponent() == ownLogsName; });
    if (entries.empty())
        return {};
    return {ScanItem::make(partsOf(logs, id, std::move(entries)))};
}

std::vector<ScanItem> AppCachesRule::scan(const ScanContext& context) const {
    std::vector<ScanItem> items;
    for (const URL& folder : context.children(context.path(cachesFolder))) {
        const std::string name = folder.lastPathComponent();
        if (!context.isDirectory(folder) || isLeftToOthers(name))
            continue;
        if (name.ends_with(updaterEnding)) {
            const std::string identifier = name.substr(0, name.size() - updaterEnding.size());
            items.push_back(updaterItem(id, folder, identifier, context.home));
        } else if (contains(name, ".")) { // named after a bundle identifier
            if (auto item = cacheItem(id, folder, name, context))
                items.push_back(std::move(*item));
        }
    }
    return items;
}

std::vector<ScanItem> TrashRule::scan(const ScanContext& context) const {
    const URL folder = context.path(trashFolder);
    const auto entries = readDirectory(folder);
    if (!entries)
        return {}; // the normal way without the permission to see the Trash
    std::vector<URL> urls;
    for (const DirectoryEntry& entry : *entries)
        if (entry.name != finderMetadataName)
            urls.push_back(folder.appending(entry.name));
    if (urls.empty())
        return {};
    ScanItem::Parts parts = partsOf(trash, id, std::move(urls));
    parts.title = fmt::format(trashTitle, parts.urls.size());
    parts.idSuffix = trashKey;
    return {ScanItem::make(std::move(parts))};
}

std::vector<ScanItem> OldDownloadsRule::scan(const ScanContext& context) const {
    const URL folder = context.path(downloadsFolder);
    std::vector<ScanItem> items;
    for (const DirectoryEntry& entry :
         readDirectory(folder).value_or(std::vector<DirectoryEntry>{})) {
        const URL file = folder.appending(entry.name);
        if (!isInstaller(file))
            continue;
        const auto added = dateAddedToFolder(file);
        const auto downloaded = added ? added : context.modificationDate(file);
        const auto days = context.days(downloaded);
        if (!days || *days < context.settings.oldDownloadDays)
            continue;
        ScanItem::Parts parts = partsOf(oldDownload, id, {file});
        parts.title = entry.name;
        parts.reason = fmt::format(downloadReason, *days);
        parts.method = CleanMethod::trash();
        parts.lastUsed = downloaded;
        items.push_back(ScanItem::make(std::move(parts)));
        items.back().hideBelowBytes = downloadHideBelowBytes;
    }
    return items;
}

std::vector<ScanItem> DockerRule::scan(const ScanContext& context) const {
    const URL folder = context.path(dockerFolder);
    if (!context.exists(folder))
        return {};
    ScanItem::Parts parts = partsOf(docker, id, {folder});
    parts.method = CleanMethod::manual(dockerAdvice);
    return {ScanItem::make(std::move(parts))};
}

std::vector<ScanItem> TimeMachineSnapshotsRule::scan(const ScanContext& context) const {
    const auto listing =
        context.runner.run(snapshotListing, snapshotListingTimeout, context.cancel);
    if (!listing || !listing->succeeded())
        return {};
    const auto count =
        std::ranges::count_if(nonEmptyLines(listing->output),
                              [](const std::string& line) { return contains(line, snapshotMark); });
    if (count == 0)
        return {};
    ScanItem::Parts parts = partsOf(snapshots, id, {});
    parts.title = fmt::format(snapshotsTitle, count);
    parts.idSuffix = snapshotsKey;
    parts.method = CleanMethod::command(snapshotThinning);
    ScanItem item = ScanItem::make(std::move(parts));
    item.hideBelowBytes = snapshotsHideBelowBytes;
    return {std::move(item)};
}

} // namespace tidewright
