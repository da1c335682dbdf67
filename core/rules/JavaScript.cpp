#include "core/rules/JavaScript.h"

#include "core/platform/Directory.h"
#include "core/projects/VersionDecision.h"
#include "core/rules/Folders.h"
#include "core/rules/ItemKind.h"
#include "core/support/Text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>
#include <span>

namespace tidewright {

namespace {

using std::string_view;

// Caches that are one folder each, all safe to clean

struct Cache {
    string_view path = {}; ///< below the home folder
    string_view group = {};
    string_view title = {};
    string_view reason = {};
    string_view whatItIs = {};
    string_view afterEffect = {};
    CleanMethod method = CleanMethod::remove();
    string_view runsFrom = {};  ///< what the command line of a process that uses it holds
    string_view isRunning = {}; ///< behind the process's name
};

const Cache npmCaches[] = {
    {.path = ".npm/_cacache",
     .group = "npm",
     .title = "npm download cache",
     .reason = "Download cache; packages are fetched again when needed.",
     .whatItIs = "Every package tarball npm has ever downloaded.",
     .afterEffect = "The next `npm install` downloads packages again.",
     .method = CleanMethod::command({.tool = "npm",
                                     .arguments = {"cache", "clean", "--force"},
                                     .workingDirectory = std::nullopt,
                                     .fallbackToRemove = true})},
    {.path = ".npm/_npx",
     .group = "npm",
     .title = "npx installs",
     .reason = "Packages installed by one-off `npx` runs.",
     .whatItIs = "Tools that `npx` downloaded, such as CLIs and MCP servers.",
     .afterEffect = "Each tool is downloaded again the next time it runs with npx.",
     .runsFrom = "/.npm/_npx/",
     .isRunning = " is running from here right now."},
};

constexpr string_view yarnAfterEffect =
    "The next `yarn install` in each project downloads packages again.";
const Cache yarnCaches[] = {
    {.path = ".yarn/berry/cache",
     .group = "Yarn",
     .title = "Yarn global cache",
     .reason = "Download cache.",
     .whatItIs = "Yarn 2+ (Berry) package archives.",
     .afterEffect = yarnAfterEffect},
    {.path = "Library/Caches/Yarn",
     .group = "Yarn",
     .title = "Yarn 1 cache",
     .reason = "Download cache.",
     .whatItIs = "Yarn Classic package cache.",
     .afterEffect = yarnAfterEffect},
};

Cache pnpmStore(string_view path) {
    return {.path = path,
            .group = "pnpm",
            .title = "pnpm store",
            .reason = "`pnpm store prune` removes only packages no project links to.",
            .whatItIs = "pnpm's content-addressable package store.",
            .afterEffect = "Unreferenced packages download again if a project needs them later.",
            // Only pnpm knows which packages are referenced: without it nothing may be removed.
            .method = CleanMethod::command({.tool = "pnpm",
                                            .arguments = {"store", "prune"},
                                            .workingDirectory = std::nullopt,
                                            .fallbackToRemove = false})};
}
const Cache pnpmStores[] = {pnpmStore("Library/pnpm/store"), pnpmStore(".pnpm-store")};

const Cache bunCaches[] = {
    {.path = ".bun/install/cache",
     .group = "Bun",
     .title = "Bun install cache",
     .reason = "Download cache.",
     .whatItIs = "Packages downloaded by `bun install`.",
     .afterEffect = "The next `bun install` downloads packages again."},
};

const Cache nodeGypCaches[] = {
    {.path = "Library/Caches/node-gyp",
     .group = "Native addons",
     .title = "node-gyp headers",
     .reason = "Node headers, downloaded again on demand.",
     .whatItIs = "Node.js header files used to compile native addons.",
     .afterEffect = "Downloaded again the next time a native addon is built."},
};

const Cache dotslashCaches[] = {
    {.path = "Library/Caches/dotslash",
     .group = "React Native DevTools",
     .title = "dotslash cache",
     .reason = "Download cache.",
     .whatItIs = "Tools fetched by dotslash, including the React Native DevTools app. It's stored "
                 "read-only, which Tidewright handles.",
     .afterEffect = "React Native DevTools downloads again the first time you open it.",
     .runsFrom = "/Caches/dotslash/",
     .isRunning = " is running from here."},
};

// Expo

constexpr string_view expoFolder = ".expo"; // holds the login as well
constexpr std::array<string_view, 4> expoCacheFolders{
    "expo-go", "android-apk-cache", "ios-simulator-app-cache", "native-modules-cache"};
constexpr ItemKind expoCaches{
    .category = Category::javascript,
    .group = "Expo",
    .title = "Expo CLI caches",
    .risk = Risk::safe,
    .decision = Decision::clean,
    .reason = "No project on this Mac uses Expo. Your Expo login is kept.",
    .whatItIs = "Cached Expo Go builds and simulator apps.",
    .afterEffect = "Expo downloads Expo Go again the next time you open a project in it.",
};
constexpr auto expoIsUsed =
    "Used by {}; clean only if space is tight. Your Expo login is kept."; // by projects

// Metro

constexpr std::array<string_view, 3> bundlerPrefixes{"metro-", "haste-map-",
                                                     "react-native-packager-cache-"};
constexpr string_view reactPrefix = "react-"; // where the name also holds the next
constexpr string_view reactPart = "native";
constexpr ItemKind bundlerCaches{
    .category = Category::javascript,
    .group = "Metro",
    .title = "Metro and Haste caches",
    .risk = Risk::safe,
    .decision = Decision::clean,
    .reason = "Bundler cache, rebuilt on the next start.",
    .whatItIs = "Transformed JavaScript cached by Metro between runs.",
    .afterEffect = "The next Metro start takes longer while it re-transforms files.",
};
constexpr string_view metroIsRunning = "Metro is running.";

// Node versions

struct VersionManager {
    string_view name = {};
    string_view versionsFolder = {};
    string_view defaultAlias = {}; ///< empty for none
};
constexpr std::array versionManagers{
    VersionManager{.name = "fnm",
                   .versionsFolder = ".local/share/fnm/node-versions",
                   .defaultAlias = ".local/share/fnm/aliases/default"},
    VersionManager{.name = "nvm", .versionsFolder = ".nvm/versions/node"},
};
constexpr char versionPrefix = 'v';
constexpr std::size_t fewestVersions = 2; // a lone one is never offered
constexpr ItemKind nodeVersion{
    .category = Category::javascript,
    .title = "Node",
    .risk = Risk::low,
};
constexpr auto nodeGroup = "Node versions ({})";                       // manager
constexpr auto nodeWhatItIs = "A Node.js installation managed by {}."; // manager
constexpr auto nodeAfterEffect = "Install it again with `{} install {}` if you need it.";
constexpr auto nodeMatches = "Matches {} required by {}."; // entries, owners
constexpr auto nodeIsDefault = "Your default {} version."; // manager
constexpr string_view nodeIsNewest = "Newest installed version.";
constexpr auto nodeIsRunning = "{} is running on it."; // process
constexpr auto nodeIsUnneeded = "No project's .nvmrc or engines field needs Node {}.";

constexpr string_view requirementSigns = "v^~= ";
constexpr string_view rangeSigns = ">= ";

ScanItem cacheItem(const Cache& cache, const std::string& ruleID, const ScanContext& context) {
    const ItemKind kind{.category = Category::javascript,
                        .group = cache.group,
                        .title = cache.title,
                        .risk = Risk::safe,
                        .decision = Decision::clean,
                        .reason = cache.reason,
                        .whatItIs = cache.whatItIs,
                        .afterEffect = cache.afterEffect};
    ScanItem::Parts parts = partsOf(kind, ruleID, {context.path(cache.path)});
    parts.method = cache.method;
    ScanItem item = ScanItem::make(std::move(parts));
    if (cache.runsFrom.empty())
        return item;
    if (const auto process = context.inUse.processUsing(std::string(cache.runsFrom)))
        item.keep(fmt::format("{}{}", *process, cache.isRunning), *process);
    return item;
}

/// One item for each of the caches that exists, in their order.
std::vector<ScanItem> cacheItems(std::span<const Cache> caches,
                                 const std::string& ruleID,
                                 const ScanContext& context) {
    std::vector<ScanItem> items;
    for (const Cache& cache : caches)
        if (context.exists(context.path(cache.path)))
            items.push_back(cacheItem(cache, ruleID, context));
    return items;
}

bool isBundlerCache(string_view name) {
    return std::ranges::any_of(bundlerPrefixes,
                               [&](string_view prefix) { return name.starts_with(prefix); }) ||
           (name.starts_with(reactPrefix) && contains(name, reactPart));
}

/// The path with every link in it resolved; what isn't there stays as it is written.
std::string resolvedPath(const URL& url) {
    namespace fs = std::filesystem;
    std::error_code error;
    fs::path path = fs::path(url.path());
    // A link that leads nowhere still tells where it was to lead.
    if (const fs::path target = fs::read_symlink(path, error); !error)
        path = path.parent_path() / target;
    const fs::path resolved = fs::weakly_canonical(path, error);
    return error ? url.path() : resolved.string();
}

struct InstalledNode {
    const VersionManager& manager;
    const URL& folder;
    std::string version;
    bool isDefault = false;
    bool isNewest = false;
};

/// Newest first. Without `fewestVersions` of them there are none.
std::vector<URL> versionFolders(const VersionManager& manager, const ScanContext& context) {
    std::vector<URL> folders = context.children(context.path(manager.versionsFolder));
    std::erase_if(folders, [](const URL& url) {
        return !url.lastPathComponent().starts_with(versionPrefix);
    });
    if (folders.size() < fewestVersions)
        return {};
    return sortedByVersionDescending(std::move(folders));
}

bool isInPath(const URL& folder, const std::string& path) {
    // The home folder itself may be reached through a link.
    return path.starts_with(folder.path()) || path.starts_with(resolvedPath(folder));
}

std::optional<std::string> reasonOfRequirements(const std::string& version,
                                                const NeededSet& needed) {
    std::vector<std::string> entries;
    std::vector<std::string> owners;
    for (const std::string& entry : needed.versions(RequirementKind::node)) {
        if (!admitsNodeVersion(entry, version))
            continue;
        entries.push_back(fmt::format("\"{}\"", entry));
        std::ranges::move(needed.owners(RequirementKind::node, entry), std::back_inserter(owners));
    }
    if (entries.empty())
        return std::nullopt;
    return fmt::format(nodeMatches, fmt::join(entries, ", "), NeededSet::summarize(owners));
}

VersionDecision::Outcome decide(const InstalledNode& node, const ScanContext& context) {
    if (auto reason = reasonOfRequirements(node.version, context.needed))
        return {Decision::keep, std::move(*reason)};
    if (node.isDefault)
        return {Decision::keep, fmt::format(nodeIsDefault, node.manager.name)};
    if (node.isNewest)
        return {Decision::keep, std::string(nodeIsNewest)};
    if (const auto process = context.inUse.processUsing(node.folder.path()))
        return {Decision::keep, fmt::format(nodeIsRunning, *process)};
    return {Decision::clean, fmt::format(nodeIsUnneeded, node.version)};
}

ScanItem nodeItem(const InstalledNode& node,
                  const std::string& ruleID,
                  const ScanContext& context) {
    const string_view manager = node.manager.name;
    ScanItem::Parts parts = partsOf(nodeVersion, ruleID, {node.folder});
    parts.group = fmt::format(nodeGroup, manager);
    parts.version = node.version;
    parts.whatItIs = fmt::format(nodeWhatItIs, manager);
    parts.afterEffect = fmt::format(nodeAfterEffect, manager, node.version);
    VersionDecision::Outcome outcome = decide(node, context);
    parts.decision = outcome.decision;
    parts.reason = std::move(outcome.reason);
    return ScanItem::make(std::move(parts));
}

} // namespace

bool admitsNodeVersion(std::string_view requirement, std::string_view version) {
    const std::string wanted = trimmed(requirement, requirementSigns);
    if (!wanted.starts_with('>'))
        return version == wanted || version.starts_with(wanted + ".");
    const std::string lowest = trimmed(wanted, rangeSigns);
    const auto lowestMajor = majorVersion(lowest.substr(0, lowest.find('.')));
    const auto major = majorVersion(version);
    return lowestMajor && major && *major >= *lowestMajor;
}

std::vector<ScanItem> NPMRule::scan(const ScanContext& context) const {
    return cacheItems(npmCaches, id, context);
}

std::vector<ScanItem> YarnRule::scan(const ScanContext& context) const {
    return cacheItems(yarnCaches, id, context);
}

std::vector<ScanItem> PNPMRule::scan(const ScanContext& context) const {
    return cacheItems(pnpmStores, id, context);
}

std::vector<ScanItem> BunRule::scan(const ScanContext& context) const {
    return cacheItems(bunCaches, id, context);
}

std::vector<ScanItem> ExpoRule::scan(const ScanContext& context) const {
    std::vector<URL> caches = existingPaths(context, context.path(expoFolder), expoCacheFolders);
    if (caches.empty())
        return {};
    ScanItem::Parts parts = partsOf(expoCaches, id, std::move(caches));
    std::vector<std::string> users;
    for (const Project& project : context.projects)
        if (project.usesExpo)
            users.push_back(project.name);
    if (!users.empty()) {
        parts.decision = Decision::ask;
        parts.reason = fmt::format(expoIsUsed, NeededSet::summarize(users));
    }
    return {ScanItem::make(std::move(parts))};
}

std::vector<ScanItem> NodeGypRule::scan(const ScanContext& context) const {
    return cacheItems(nodeGypCaches, id, context);
}

std::vector<ScanItem> BundlerTempRule::scan(const ScanContext& context) const {
    const URL& folder = context.temporaryDirectory;
    std::vector<URL> caches;
    for (const DirectoryEntry& entry :
         readDirectory(folder).value_or(std::vector<DirectoryEntry>{}))
        if (isBundlerCache(entry.name))
            caches.push_back(folder.appending(entry.name));
    if (caches.empty())
        return {};
    std::ranges::sort(caches); // the first one is the item's id
    ScanItem::Parts parts = partsOf(bundlerCaches, id, std::move(caches));
    parts.owner = AppMatcher::metro;
    ScanItem item = ScanItem::make(std::move(parts));
    if (context.inUse.isRunning(AppMatcher::metro))
        item.keep(std::string(metroIsRunning));
    return {std::move(item)};
}

std::vector<ScanItem> DotslashRule::scan(const ScanContext& context) const {
    return cacheItems(dotslashCaches, id, context);
}

std::vector<ScanItem> NodeVersionsRule::scan(const ScanContext& context) const {
    std::vector<ScanItem> items;
    for (const VersionManager& manager : versionManagers) {
        const std::string defaultPath =
            manager.defaultAlias.empty() ? "" : resolvedPath(context.path(manager.defaultAlias));
        const std::vector<URL> folders = versionFolders(manager, context);
        for (const URL& folder : folders) {
            const InstalledNode node{.manager = manager,
                                     .folder = folder,
                                     .version = folder.lastPathComponent().substr(1),
                                     .isDefault = isInPath(folder, defaultPath),
                                     .isNewest = &folder == &folders.front()};
            items.push_back(nodeItem(node, id, context));
        }
    }
    return items;
}

} // namespace tidewright
