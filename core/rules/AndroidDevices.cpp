#include "core/rules/AndroidDevices.h"

#include "core/projects/VersionDecision.h"
#include "core/rules/Folders.h"
#include "core/rules/ItemKind.h"
#include "core/support/Pattern.h"
#include "core/support/Text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace tidewright {

namespace {

using std::string_view;
using AVD = AndroidEnvironment::AVD;

// Emulators

constexpr string_view snapshotsFolder = "snapshots";
constexpr auto snapshotsTitle = "{} snapshots";
constexpr ItemKind snapshots{
    .category = Category::android,
    .group = "Emulator quick-boot snapshots",
    .risk = Risk::safe,
    .decision = Decision::clean,
    .reason = "Snapshots only make the next boot faster.",
    .whatItIs = "Saved RAM state that lets the emulator resume instantly instead of booting.",
};
constexpr auto snapshotsAfterEffect =
    "The next boot of {} is a cold boot (about 30–60 s), then a new snapshot is saved.";

// The user data of an emulator, in the two forms that it is kept in.
constexpr std::array<string_view, 2> userDataFiles{"userdata-qemu.img.qcow2", "userdata-qemu.img"};
constexpr ItemKind emulator{
    .category = Category::android,
    .group = "Emulators",
    .risk = Risk::check,
    .decision = Decision::ask,
    .reason = "Emulators are devices, so Tidewright never removes them on its own.",
    .whatItIs = "A whole Android virtual device: its storage, installed apps and settings.",
    .afterEffect =
        "The emulator disappears from Device Manager. Recreate it from Android Studio if "
        "you need it again.",
};
constexpr auto lastUsedReason = "Last used {}. {}"; // before the usual one
constexpr const char* usedToday = "today";
constexpr const char* usedYesterday = "yesterday";
constexpr auto usedDaysAgo = "{} days ago";

constexpr auto emulatorRuns = "Emulator {} is running.";
constexpr auto emulatorName = "Emulator {}";

// Gradle

constexpr string_view gradleCachesFolder = ".gradle/caches";
constexpr string_view digits = "0123456789";
constexpr ItemKind versionCache{
    .category = Category::android,
    .group = "Gradle caches",
    .title = "Gradle cache",
    .risk = Risk::safe,
    .whatItIs = "Transformed dependencies and build cache for one Gradle version.",
};
constexpr auto versionCacheAfterEffect =
    "The first build with Gradle {} is slower while the cache is rebuilt.";

constexpr string_view wrapperDistsFolder = ".gradle/wrapper/dists";
constexpr string_view wrapperDistExpression =
    R"(^gradle-([0-9][0-9.]*(?:-rc-?[0-9]+)?)-(?:bin|all)$)";
constexpr ItemKind wrapperDist{
    .category = Category::android,
    .group = "Gradle distributions",
    .title = "Gradle distribution",
    .risk = Risk::safe,
};
constexpr auto wrapperDistWhatItIs = "The downloaded Gradle {} program used by the Gradle wrapper.";
constexpr auto wrapperDistAfterEffect =
    "Downloaded again (about 150 MB) the next time a project uses Gradle {}.";

constexpr auto gradleVersionRuns = "A Gradle {} daemon is running.";
constexpr const char* gradleDaemonName = "Gradle daemon";

constexpr std::array<string_view, 2> daemonFolders{".gradle/daemon", ".kotlin/daemon"};
constexpr ItemKind daemonLogs{
    .category = Category::android,
    .group = "Gradle daemon logs",
    .title = "Gradle and Kotlin daemon logs",
    .risk = Risk::safe,
    .decision = Decision::clean,
    .reason = "Logs only.",
    .whatItIs = "Log files and registries written by background Gradle and Kotlin daemons.",
    .afterEffect = "Nothing; daemons write fresh logs next time.",
};
constexpr const char* gradleRuns = "A Gradle daemon is running.";

// Android Studio

constexpr string_view studioPrefix = "AndroidStudio";
constexpr string_view studioAfterEffect =
    "Nothing for the installed version. Old settings were already imported when you upgraded.";

struct StudioLocation {
    string_view folder;
    ItemKind kind;
};
constexpr std::array studioLocations{
    StudioLocation{"Library/Caches/Google",
                   {.category = Category::android,
                    .group = "Android Studio caches",
                    .risk = Risk::safe,
                    .whatItIs = "Indexes and caches for one Android Studio version.",
                    .afterEffect = studioAfterEffect}},
    StudioLocation{"Library/Application Support/Google",
                   {.category = Category::android,
                    .group = "Android Studio settings",
                    .risk = Risk::low,
                    .whatItIs = "Settings and plugins of one Android Studio version.",
                    .afterEffect = studioAfterEffect}},
    StudioLocation{"Library/Logs/Google",
                   {.category = Category::android,
                    .group = "Android Studio logs",
                    .risk = Risk::safe,
                    .whatItIs = "IDE logs of one Android Studio version.",
                    .afterEffect = studioAfterEffect}},
};
constexpr string_view cachesWord = "Caches";
constexpr const char* installedStudioCaches =
    "Belongs to the installed Android Studio. Use File → Invalidate Caches instead of deleting.";
constexpr const char* installedStudio = "Belongs to the installed Android Studio.";
constexpr const char* noStudio =
    "Android Studio doesn't seem to be installed. Remove if you no longer use it.";
constexpr auto olderStudio = "From an older Android Studio. The installed version is {}.";

// Heap dumps

constexpr string_view heapDumpExtension = "hprof";
constexpr ItemKind heapDump{
    .category = Category::android,
    .group = "Crash heap dumps",
    .risk = Risk::safe,
    .decision = Decision::clean,
    .reason = "Memory dump written when an IDE crashed.",
    .whatItIs = "A Java heap dump, usually from Android Studio running out of memory.",
    .afterEffect = "Nothing, unless you planned to send it to JetBrains or Google for analysis.",
};

void keepWhileEmulatorRuns(ScanItem& item, const AVD& avd, const ScanContext& context) {
    if (context.inUse.runningAVDs.contains(avd.name))
        item.keep(fmt::format(emulatorRuns, avd.name), fmt::format(emulatorName, avd.name));
}

std::optional<Date> lastUse(const AVD& avd, const ScanContext& context) {
    for (const string_view name : userDataFiles)
        if (const auto date = context.modificationDate(avd.directory.appending(name)))
            return date;
    return context.modificationDate(avd.directory);
}

std::string emulatorReason(const std::optional<int>& daysSinceUse) {
    if (!daysSinceUse)
        return std::string(emulator.reason);
    const std::string used = *daysSinceUse == 0   ? usedToday
                             : *daysSinceUse == 1 ? usedYesterday
                                                  : fmt::format(usedDaysAgo, *daysSinceUse);
    return fmt::format(lastUsedReason, used, emulator.reason);
}

/// Judged by what the projects need.
ScanItem::Parts gradleParts(const ItemKind& kind,
                            const std::string& ruleID,
                            const URL& folder,
                            const std::string& version,
                            const ScanContext& context) {
    auto [decision, reason] = VersionDecision::decide(RequirementKind::gradle, version, context);
    ScanItem::Parts parts = partsOf(kind, ruleID, {folder});
    parts.version = version;
    parts.decision = decision;
    parts.reason = std::move(reason);
    return parts;
}

void keepWhileGradleRuns(ScanItem& item,
                         const ScanContext& context,
                         const std::optional<std::string>& inUseBy = std::nullopt) {
    const std::string version = item.version.value();
    if (item.decision != Decision::keep && context.inUse.isGradleVersionRunning(version))
        item.keep(fmt::format(gradleVersionRuns, version), inUseBy);
}

VersionDecision::Outcome judgeStudioFolder(const std::string& name,
                                           string_view location,
                                           const std::set<std::string>& installed) {
    if (installed.contains(name))
        return {Decision::keep,
                contains(location, cachesWord) ? installedStudioCaches : installedStudio};
    if (installed.empty())
        return {Decision::ask, noStudio};
    return {Decision::clean, fmt::format(olderStudio, fmt::join(installed, ", "))};
}

} // namespace

std::vector<ScanItem> AVDSnapshotsRule::scan(const ScanContext& context) const {
    std::vector<ScanItem> items;
    for (const AVD& avd : context.android.avds) {
        const URL folder = avd.directory.appending(snapshotsFolder);
        if (!context.isDirectory(folder))
            continue;
        ScanItem::Parts parts = partsOf(snapshots, id, {folder});
        parts.title = fmt::format(snapshotsTitle, avd.name);
        parts.afterEffect = fmt::format(snapshotsAfterEffect, avd.name);
        items.push_back(ScanItem::make(std::move(parts)));
        keepWhileEmulatorRuns(items.back(), avd, context);
    }
    return items;
}

std::vector<ScanItem> AVDRule::scan(const ScanContext& context) const {
    std::vector<ScanItem> items;
    for (const AVD& avd : context.android.avds) {
        ScanItem::Parts parts = partsOf(emulator, id, {avd.directory, avd.iniFile});
        parts.title = avd.name;
        parts.version = avd.systemImage;
        parts.lastUsed = lastUse(avd, context);
        parts.reason = emulatorReason(context.days(parts.lastUsed));
        items.push_back(ScanItem::make(std::move(parts)));
        keepWhileEmulatorRuns(items.back(), avd, context);
    }
    return items;
}

std::vector<ScanItem> GradleVersionCacheRule::scan(const ScanContext& context) const {
    std::vector<ScanItem> items;
    for (const URL& folder : childFolders(context, context.path(gradleCachesFolder))) {
        const std::string version = folder.lastPathComponent();
        if (version.find_first_of(digits) != 0)
            continue; // shared between versions, as "modules-2"
        ScanItem::Parts parts = gradleParts(versionCache, id, folder, version, context);
        parts.afterEffect = fmt::format(versionCacheAfterEffect, version);
        items.push_back(ScanItem::make(std::move(parts)));
        keepWhileGradleRuns(items.back(), context, gradleDaemonName);
    }
    return items;
}

std::vector<ScanItem> GradleWrapperDistRule::scan(const ScanContext& context) const {
    static const Pattern distribution(wrapperDistExpression);
    std::vector<ScanItem> items;
    for (const URL& folder : context.children(context.path(wrapperDistsFolder))) {
        const auto match = distribution.firstMatch(folder.lastPathComponent());
        if (!match)
            continue;
        const std::string& version = match->at(1);
        ScanItem::Parts parts = gradleParts(wrapperDist, id, folder, version, context);
        parts.whatItIs = fmt::format(wrapperDistWhatItIs, version);
        parts.afterEffect = fmt::format(wrapperDistAfterEffect, version);
        items.push_back(ScanItem::make(std::move(parts)));
        keepWhileGradleRuns(items.back(), context);
    }
    return items;
}

std::vector<ScanItem> GradleDaemonLogsRule::scan(const ScanContext& context) const {
    std::vector<URL> folders = existingPaths(context, context.home, daemonFolders);
    if (folders.empty())
        return {};
    ScanItem::Parts parts = partsOf(daemonLogs, id, std::move(folders));
    parts.owner = AppMatcher::gradle;
    ScanItem item = ScanItem::make(std::move(parts));
    if (context.inUse.isRunning(AppMatcher::gradle))
        item.keep(gradleRuns, gradleDaemonName);
    return {std::move(item)};
}

std::vector<ScanItem> AndroidStudioLeftoversRule::scan(const ScanContext& context) const {
    const std::set<std::string>& installed = context.android.studioDataDirectories;
    std::vector<ScanItem> items;
    for (const StudioLocation& location : studioLocations) {
        for (const URL& folder : context.children(context.path(location.folder))) {
            std::string name = folder.lastPathComponent();
            if (!name.starts_with(studioPrefix))
                continue;
            ScanItem::Parts parts = partsOf(location.kind, id, {folder});
            auto [decision, reason] = judgeStudioFolder(name, location.folder, installed);
            parts.decision = decision;
            parts.reason = std::move(reason);
            parts.title = std::move(name);
            items.push_back(ScanItem::make(std::move(parts)));
        }
    }
    return items;
}

std::vector<ScanItem> HeapDumpRule::scan(const ScanContext& context) const {
    std::vector<ScanItem> items;
    for (const URL& file : context.children(context.home)) {
        if (file.pathExtension() != heapDumpExtension)
            continue;
        ScanItem::Parts parts = partsOf(heapDump, id, {file});
        parts.title = file.lastPathComponent();
        parts.lastUsed = context.modificationDate(file);
        items.push_back(ScanItem::make(std::move(parts)));
    }
    return items;
}

} // namespace tidewright
