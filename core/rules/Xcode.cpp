#include "core/rules/Xcode.h"

#include "core/rules/Folders.h"
#include "core/rules/ItemKind.h"
#include "core/support/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <functional>
#include <span>

namespace tidewright {

namespace {

using namespace std::chrono_literals;
using std::string_view;

// DerivedData

constexpr string_view derivedDataFolder = "Library/Developer/Xcode/DerivedData";
constexpr ItemKind derivedData{
    .category = Category::xcode,
    .group = "DerivedData",
    .risk = Risk::safe,
    .decision = Decision::clean,
    .reason = "Build products and indexes. Xcode rebuilds them.",
    .whatItIs = "Intermediate build files, products and the code index for one Xcode project.",
    .afterEffect = "The next build of this project is a full build and Xcode re-indexes once.",
};

// Device support

constexpr std::array<string_view, 4> devicePlatforms{"iOS", "watchOS", "tvOS", "visionOS"};
constexpr auto deviceSupportFolder = "Library/Developer/Xcode/{} DeviceSupport";
constexpr std::size_t recentVersions = 2; // kept of each platform
constexpr ItemKind deviceSupport{
    .category = Category::xcode,
    .risk = Risk::safe,
    .afterEffect = "Xcode copies them again (a few minutes) the next time you connect a device on "
                   "this version.",
};
constexpr auto deviceSupportGroup = "{} device support";
constexpr auto recentVersionReason = "One of the {} most recently used {} versions.";
constexpr auto olderVersionReason = "Older {} version than the devices you used recently.";
constexpr auto deviceSupportWhatItIs =
    "Debug symbols copied from a physical {} device the first time you ran on it.";

// Archives

constexpr string_view archivesFolder = "Library/Developer/Xcode/Archives";
constexpr string_view archiveExtension = "xcarchive";
constexpr ItemKind archive{
    .category = Category::xcode,
    .group = "Archives",
    .risk = Risk::check,
    .decision = Decision::ask,
    .reason = "Keep archives of builds you shipped: their dSYMs symbolicate crash reports.",
    .whatItIs = "An app build created with Product → Archive, including debug symbols.",
    .afterEffect = "Moved to the Trash. Crash reports from this build can't be symbolicated once "
                   "it's emptied.",
};

// Caches of Xcode, and downloads of its dependency managers

struct Cache {
    string_view path;
    ItemKind kind;
    CleanMethod method;
    const AppMatcher* owner = nullptr; ///< none: the cache may be cleaned at any time
};

const std::array xcodeCaches{
    Cache{
        .path = "Library/Caches/com.apple.dt.Xcode",
        .kind = {.category = Category::xcode,
                 .group = "Xcode caches",
                 .title = "Xcode cache",
                 .risk = Risk::safe,
                 .decision = Decision::clean,
                 .reason = "Cache that Xcode recreates.",
                 .whatItIs = "Downloaded documentation, package lists and other Xcode caches.",
                 .afterEffect = "Xcode recreates it as needed."},
        .method = CleanMethod::remove(),
        .owner = &AppMatcher::xcode,
    },
    Cache{
        .path = "Library/Developer/CoreSimulator/Caches",
        .kind = {.category = Category::xcode,
                 .group = "Xcode caches",
                 .title = "Simulator caches",
                 .risk = Risk::safe,
                 .decision = Decision::clean,
                 .reason = "dyld shared caches the Simulator rebuilds.",
                 .whatItIs = "Shared library caches generated for each simulator runtime.",
                 .afterEffect = "The first simulator launch per runtime takes a little longer."},
        .method = CleanMethod::remove(),
        .owner = &AppMatcher::simulator,
    },
    Cache{
        .path = "Library/Developer/Xcode/UserData/Previews",
        .kind = {.category = Category::xcode,
                 .group = "Xcode caches",
                 .title = "SwiftUI preview simulators",
                 .risk = Risk::safe,
                 .decision = Decision::clean,
                 .reason = "Preview devices are recreated on demand.",
                 .whatItIs = "Hidden simulators Xcode uses to render SwiftUI previews.",
                 .afterEffect = "The next preview takes longer to start."},
        .method =
            CleanMethod::command({.tool = "xcrun",
                                  .arguments = {"simctl", "--set", "previews", "delete", "all"},
                                  .workingDirectory = std::nullopt,
                                  .fallbackToRemove = true}),
        .owner = &AppMatcher::xcode,
    },
};

const std::array podCaches{
    Cache{
        .path = "Library/Caches/CocoaPods",
        .kind = {.category = Category::xcode,
                 .group = "Dependency caches",
                 .title = "CocoaPods cache",
                 .risk = Risk::safe,
                 .decision = Decision::ask,
                 .reason = "Regenerates, but every pod downloads again on the next pod install. "
                           "Worth it when space is tight.",
                 .whatItIs = "Downloaded pod sources reused by every `pod install`.",
                 .afterEffect = "The next `pod install` in each project downloads its pods again."},
        .method = CleanMethod::command({.tool = "pod",
                                        .arguments = {"cache", "clean", "--all"},
                                        .workingDirectory = std::nullopt,
                                        .fallbackToRemove = true}),
    },
    Cache{
        .path = "Library/Caches/ReactNative",
        .kind = {.category = Category::xcode,
                 .group = "Dependency caches",
                 .title = "React Native prebuilts",
                 .risk = Risk::safe,
                 .decision = Decision::ask,
                 .reason = "Hermes and React Native prebuilt tarballs. Large re-download on the "
                           "next pod install.",
                 .whatItIs = "Prebuilt React Native and Hermes binaries downloaded by "
                             "`pod install`.",
                 .afterEffect = "The next `pod install` downloads them again."},
        .method = CleanMethod::remove(),
    },
};

// Other copies of Xcode

constexpr const char* applicationsFolder = "/Applications";
constexpr string_view xcodePrefix = "Xcode";
constexpr string_view applicationExtension = "app";
const ShellCommand activePathQuery{.tool = "xcode-select",
                                   .arguments = {"-p"},
                                   .workingDirectory = std::nullopt,
                                   .fallbackToRemove = false};
constexpr Duration activePathTimeout = 60s;
constexpr ItemKind extraXcode{
    .category = Category::xcode,
    .group = "Other Xcode installs",
    .risk = Risk::check,
    .decision = Decision::info,
    .whatItIs = "An additional copy of Xcode, usually 10–40 GB.",
    .afterEffect = "Remove it in Finder if you no longer need this version. Tidewright never "
                   "deletes apps.",
};
constexpr auto extraXcodeReason = "Not the active Xcode ({}).";
constexpr const char* activePathUnknown = "unknown";
constexpr auto extraXcodeAdvice = "Drag {} from Applications to the Trash in Finder.";

/// The project's name: what follows the last dash is a hash of where the project lies.
std::string projectTitle(const std::string& folderName) {
    const std::size_t lastDash = folderName.rfind('-');
    return lastDash == 0 ? folderName : folderName.substr(0, lastDash);
}

struct DatedFolder {
    URL url;
    std::optional<Date> modified;
};

/// The folders in a folder; those without a readable date come last, equal dates in the order of
/// their names.
std::vector<DatedFolder> foldersNewestFirst(const ScanContext& context, const URL& parent) {
    std::vector<DatedFolder> folders;
    for (const URL& url : childFolders(context, parent))
        folders.push_back({url, context.modificationDate(url)});
    std::ranges::stable_sort(folders, std::ranges::greater{}, &DatedFolder::modified);
    return folders;
}

ScanItem deviceSupportItem(const std::string& ruleID,
                           string_view platform,
                           const DatedFolder& folder,
                           Decision decision) {
    ScanItem::Parts parts = partsOf(deviceSupport, ruleID, {folder.url});
    parts.group = fmt::format(deviceSupportGroup, platform);
    parts.title = folder.url.lastPathComponent();
    parts.decision = decision;
    parts.reason = decision == Decision::keep
                       ? fmt::format(recentVersionReason, recentVersions, platform)
                       : fmt::format(olderVersionReason, platform);
    parts.whatItIs = fmt::format(deviceSupportWhatItIs, platform);
    parts.owner = AppMatcher::xcode;
    parts.lastUsed = folder.modified;
    return ScanItem::make(std::move(parts));
}

/// Of a name that has an extension.
std::string nameWithoutExtension(const URL& url) {
    const std::string name = url.lastPathComponent();
    return name.substr(0, name.rfind('.'));
}

std::vector<ScanItem> itemsOfExisting(std::span<const Cache> caches,
                                      const std::string& ruleID,
                                      const ScanContext& context) {
    std::vector<ScanItem> items;
    for (const Cache& cache : caches) {
        const URL url = context.path(cache.path);
        if (!context.exists(url))
            continue;
        ScanItem::Parts parts = partsOf(cache.kind, ruleID, {url});
        parts.method = cache.method;
        if (cache.owner != nullptr)
            parts.owner = *cache.owner;
        items.push_back(ScanItem::make(std::move(parts)));
    }
    return items;
}

bool isXcode(const URL& application) {
    return application.lastPathComponent().starts_with(xcodePrefix) &&
           application.pathExtension() == applicationExtension;
}

/// The folder inside the Xcode whose tools are used, empty where it can't be found out.
std::string activePath(const ScanContext& context) {
    const auto answer = context.runner.run(activePathQuery, activePathTimeout, context.cancel);
    return answer ? trimmed(answer->output) : std::string();
}

} // namespace

std::vector<ScanItem> DerivedDataRule::scan(const ScanContext& context) const {
    std::vector<ScanItem> items;
    for (const URL& folder : childFolders(context, context.path(derivedDataFolder))) {
        ScanItem::Parts parts = partsOf(derivedData, id, {folder});
        parts.title = projectTitle(folder.lastPathComponent());
        parts.owner = AppMatcher::xcode;
        parts.lastUsed = context.modificationDate(folder);
        items.push_back(ScanItem::make(std::move(parts)));
    }
    return items;
}

std::vector<ScanItem> DeviceSupportRule::scan(const ScanContext& context) const {
    std::vector<ScanItem> items;
    for (const string_view platform : devicePlatforms) {
        const URL parent = context.path(fmt::format(deviceSupportFolder, platform));
        std::size_t index = 0;
        for (const DatedFolder& folder : foldersNewestFirst(context, parent)) {
            const Decision decision = index++ < recentVersions ? Decision::keep : Decision::clean;
            items.push_back(deviceSupportItem(id, platform, folder, decision));
        }
    }
    return items;
}

std::vector<ScanItem> XcodeArchivesRule::scan(const ScanContext& context) const {
    std::vector<ScanItem> items;
    for (const URL& day : context.children(context.path(archivesFolder))) {
        for (const URL& url : context.children(day)) {
            if (url.pathExtension() != archiveExtension)
                continue;
            ScanItem::Parts parts = partsOf(archive, id, {url});
            parts.title = nameWithoutExtension(url);
            parts.version = day.lastPathComponent();
            parts.method = CleanMethod::trash();
            parts.lastUsed = context.modificationDate(url);
            items.push_back(ScanItem::make(std::move(parts)));
        }
    }
    return items;
}

std::vector<ScanItem> XcodeCachesRule::scan(const ScanContext& context) const {
    return itemsOfExisting(xcodeCaches, id, context);
}

std::vector<ScanItem> CocoaPodsRule::scan(const ScanContext& context) const {
    return itemsOfExisting(podCaches, id, context);
}

std::vector<ScanItem> ExtraXcodeRule::scan(const ScanContext& context) const {
    return scanApplications(URL(applicationsFolder), context);
}

std::vector<ScanItem> ExtraXcodeRule::scanApplications(const URL& folder,
                                                       const ScanContext& context) const {
    std::vector<URL> applications = context.children(folder);
    std::erase_if(applications, [](const URL& url) { return !isXcode(url); });
    if (applications.size() < 2)
        return {};
    const std::string active = activePath(context);
    std::vector<ScanItem> items;
    for (const URL& application : applications) {
        if (active.starts_with(application.path()))
            continue;
        ScanItem::Parts parts = partsOf(extraXcode, id, {application});
        parts.title = nameWithoutExtension(application);
        parts.reason = fmt::format(extraXcodeReason, active.empty() ? activePathUnknown : active);
        parts.method =
            CleanMethod::manual(fmt::format(extraXcodeAdvice, application.lastPathComponent()));
        items.push_back(ScanItem::make(std::move(parts)));
    }
    return items;
}

} // namespace tidewright
