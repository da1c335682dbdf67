#include "core/rules/Android.h"

#include "core/platform/Directory.h"
#include "core/platform/FileContents.h"
#include "core/projects/VersionDecision.h"
#include "core/rules/Folders.h"
#include "core/rules/ItemKind.h"
#include "core/support/Pattern.h"
#include "core/support/Text.h"

#include <fmt/format.h>

namespace tidewright {

namespace {

using std::string_view;
using VersionDecision::Outcome;

// System images

constexpr string_view systemImagesFolder = "system-images";
constexpr ItemKind systemImage{
    .category = Category::android,
    .group = "Emulator system images",
    .title = "System image",
    .risk = Risk::low,
    .whatItIs = "An Android OS image that emulators boot from. Each one is 2–8 GB.",
    .afterEffect = "Install it again from Android Studio → Settings → Android SDK if you create an "
                   "emulator that needs it.",
};
constexpr const char* emptyPlatform = "Empty folder left behind by an uninstalled image.";
constexpr auto usedImage = "Used by emulator {}.";
constexpr auto unusedImage = "None of your {} emulators use this image."; // also for one
constexpr const char* imageWithoutEmulators =
    "No emulators exist right now. Remove it if you don't plan to create one with this image.";

// NDK

constexpr string_view ndkFolder = "ndk";
constexpr string_view singleNDKFolder = "ndk-bundle"; // where the only NDK was, before versions
constexpr string_view propertiesName = "source.properties";
constexpr string_view revisionExpression = R"(Pkg\.Revision\s*=\s*([0-9.]+))";
constexpr ItemKind ndk{
    .category = Category::android,
    .group = "NDK versions",
    .title = "NDK",
    .risk = Risk::low,
    .whatItIs = "The native C/C++ toolchain used to compile React Native and other native code. "
                "About 2.5–3 GB per version.",
    .afterEffect = "Gradle downloads it again automatically if a project asks for this version.",
};

// Build tools

constexpr string_view buildToolsFolder = "build-tools";
constexpr string_view candidateMark = "-rc";
constexpr int oldestSupportedMajor = 34;
constexpr ItemKind buildTools{
    .category = Category::android,
    .group = "Build tools",
    .title = "Build tools",
    .risk = Risk::low,
    .whatItIs = "aapt2, d8, zipalign and friends for one Android build-tools version.",
    .afterEffect = "Gradle installs it again if a project requests it.",
};
constexpr auto neededBuildTools = "Needed by {}.";
constexpr const char* candidate = "Release candidate. Stable versions replace it.";
constexpr const char* newestBuildTools =
    "Newest installed version, kept as the default for new projects.";
constexpr auto oldBuildTools = "Older than {}.0 and no project pins it.";
constexpr const char* recentBuildTools =
    "Recent version that the Android Gradle Plugin may pick by default.";

// CMake

constexpr string_view cmakeFolder = "cmake";
constexpr string_view pluginDefaultCMake = "3.22.1";
constexpr ItemKind cmake{
    .category = Category::android,
    .group = "CMake versions",
    .title = "CMake",
    .risk = Risk::low,
    .whatItIs = "The build system used for native (C++) modules.",
    .afterEffect = "Gradle installs it again if a project requests it.",
};
constexpr auto neededCMake = "Used by the last native build of {}."; // also for one that is pinned
constexpr const char* defaultCMake = "Android Gradle Plugin's default CMake version.";
constexpr const char* newestCMake = "Newest installed version.";
constexpr const char* unusedCMake =
    "Not pinned by any project and not used by recent native builds.";

/// The folders in one folder of the SDK; none without an SDK.
std::vector<URL> packageFolders(const ScanContext& context, string_view name) {
    if (!context.android.sdk)
        return {};
    return childFolders(context, context.android.sdk->appending(name));
}

ScanItem packageItem(const ItemKind& kind,
                     const std::string& ruleID,
                     const URL& folder,
                     std::string version,
                     Outcome outcome) {
    ScanItem::Parts parts = partsOf(kind, ruleID, {folder});
    parts.version = std::move(version);
    parts.decision = outcome.decision;
    parts.reason = std::move(outcome.reason);
    return ScanItem::make(std::move(parts));
}

Outcome judgeImage(const std::string& image, const std::vector<AndroidEnvironment::AVD>& avds) {
    std::vector<std::string> users;
    for (const auto& avd : avds)
        if (avd.systemImage == image)
            users.push_back(avd.name);
    if (!users.empty())
        return {Decision::keep, fmt::format(usedImage, NeededSet::summarize(users))};
    if (!avds.empty())
        return {Decision::clean, fmt::format(unusedImage, avds.size())};
    return {Decision::ask, imageWithoutEmulators};
}

bool isCandidate(const std::string& version) { return contains(version, candidateMark); }

/// Judged even when no project declares any.
Outcome judgeBuildTools(const std::string& version,
                        const std::optional<std::string>& newest,
                        const NeededSet& needed) {
    constexpr auto kind = RequirementKind::buildTools;
    if (needed.contains(kind, version))
        return {Decision::keep, fmt::format(neededBuildTools, needed.ownerSummary(kind, version))};
    if (isCandidate(version))
        return {Decision::clean, candidate};
    if (version == newest)
        return {Decision::keep, newestBuildTools};
    if (majorVersion(version).value_or(0) < oldestSupportedMajor)
        return {Decision::clean, fmt::format(oldBuildTools, oldestSupportedMajor)};
    return {Decision::keep, recentBuildTools};
}

Outcome judgeCMake(const std::string& version, const std::string& newest, const NeededSet& needed) {
    constexpr auto kind = RequirementKind::cmake;
    if (needed.contains(kind, version))
        return {Decision::keep, fmt::format(neededCMake, needed.ownerSummary(kind, version))};
    if (version == pluginDefaultCMake)
        return {Decision::keep, defaultCMake};
    if (version == newest)
        return {Decision::keep, newestCMake};
    return {Decision::clean, unusedCMake};
}

} // namespace

std::vector<ScanItem> SystemImagesRule::scan(const ScanContext& context) const {
    std::vector<ScanItem> items;
    for (const URL& platform : packageFolders(context, systemImagesFolder)) {
        const std::vector<URL> tags = childFolders(context, platform);
        // What may not be listed is not known to be empty.
        if (tags.empty() && readDirectory(platform))
            items.push_back(packageItem(systemImage, id, platform, platform.lastPathComponent(),
                                        {Decision::clean, emptyPlatform}));
        for (const URL& tag : tags) {
            std::string image =
                fmt::format("{}/{}", platform.lastPathComponent(), tag.lastPathComponent());
            Outcome outcome = judgeImage(image, context.android.avds);
            items.push_back(
                packageItem(systemImage, id, tag, std::move(image), std::move(outcome)));
        }
    }
    return items;
}

std::vector<ScanItem> NDKRule::scan(const ScanContext& context) const {
    if (!context.android.sdk)
        return {};
    std::vector<URL> folders = packageFolders(context, ndkFolder);
    if (const URL single = context.android.sdk->appending(singleNDKFolder); context.exists(single))
        folders.push_back(single);
    std::vector<ScanItem> items;
    for (const URL& folder : folders) {
        const std::string installed = version(folder);
        items.push_back(
            packageItem(ndk, id, folder, installed,
                        VersionDecision::decide(RequirementKind::ndk, installed, context)));
    }
    return items;
}

std::string NDKRule::version(const URL& folder) {
    static const Pattern revision(revisionExpression);
    std::string name = folder.lastPathComponent();
    if (name != singleNDKFolder)
        return name;
    const auto match = revision.firstMatch(readText(folder.appending(propertiesName)).value_or(""));
    return match ? match->at(1) : name;
}

std::vector<ScanItem> BuildToolsRule::scan(const ScanContext& context) const {
    const std::vector<URL> folders =
        sortedByVersionDescending(packageFolders(context, buildToolsFolder));
    std::optional<std::string> newest;
    for (const URL& folder : folders)
        if (!newest && !isCandidate(folder.lastPathComponent()))
            newest = folder.lastPathComponent();
    std::vector<ScanItem> items;
    for (const URL& folder : folders) {
        const std::string version = folder.lastPathComponent();
        items.push_back(packageItem(buildTools, id, folder, version,
                                    judgeBuildTools(version, newest, context.needed)));
    }
    return items;
}

std::vector<ScanItem> CMakeRule::scan(const ScanContext& context) const {
    const std::vector<URL> folders =
        sortedByVersionDescending(packageFolders(context, cmakeFolder));
    std::vector<ScanItem> items;
    for (const URL& folder : folders) {
        const std::string version = folder.lastPathComponent();
        items.push_back(
            packageItem(cmake, id, folder, version,
                        judgeCMake(version, folders.front().lastPathComponent(), context.needed)));
    }
    return items;
}

} // namespace tidewright
