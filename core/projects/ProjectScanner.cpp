#include "core/projects/ProjectScanner.h"

#include "core/platform/Directory.h"
#include "core/platform/FileContents.h"
#include "core/projects/RequirementParser.h"
#include "core/support/ChildTask.h"
#include "core/support/Collation.h"
#include "core/support/Text.h"

#include <algorithm>
#include <iterator>

namespace tidewright {

namespace {

// Folders that are never entered, by name.
const std::set<std::string_view> skippedNames{
    "node_modules",     "Library", "Pods",    "build", "DerivedData",  "dist",
    "vendor",           ".build",  ".gradle", ".cxx",  "Applications", "Carthage",
    "bower_components",
};

// Folders that are never entered, by lower-cased extension.
const std::set<std::string_view> packageExtensions{
    "app",       "photoslibrary", "xcodeproj",    "xcworkspace", "bundle",
    "framework", "xcarchive",     "musiclibrary", "tvlibrary",   "imovielibrary",
    "fcpbundle", "logicx",        "band",         "playground",
};

// Folders that are not entered directly below a project.
const std::set<std::string_view> platformSubdirectories{
    "android", "ios", "macos", "windows", "linux", "web",
};

// Names, in lower case, that say nothing without the parent's.
const std::set<std::string_view> genericFolderNames{"example", "app", "mobile", "apps"};

constexpr std::array activityMarkers{
    ".git/index",       ".git/HEAD",    ".git/FETCH_HEAD",
    "package.json",     "yarn.lock",    "package-lock.json",
    "pnpm-lock.yaml",   "pubspec.yaml", "android/app/build.gradle",
    "ios/Podfile.lock", "src",          "app",
};

constexpr std::array lockFiles{
    std::pair{"yarn.lock", "yarn"},        std::pair{"pnpm-lock.yaml", "pnpm"},
    std::pair{"bun.lockb", "bun"},         std::pair{"bun.lock", "bun"},
    std::pair{"package-lock.json", "npm"},
};

constexpr const char* wrapperProperties = "gradle/wrapper/gradle-wrapper.properties";
constexpr std::size_t widestWalk = 8;

/// The outcome of reading one folder.
struct Visit {
    std::optional<Project> project;
    std::vector<LargeFile> largeFiles;
    std::vector<URL> subdirectories; ///< that may be entered
};

bool mayEnter(const URL& folder) {
    const std::string name = folder.lastPathComponent();
    return !name.starts_with('.') && !skippedNames.contains(name) &&
           !packageExtensions.contains(lowercasedASCII(folder.pathExtension())) &&
           !isPackage(folder);
}

Visit visitDirectory(const URL& folder, Int64 largeFileThreshold) {
    Visit visit;
    const auto entries = readDetailedDirectory(folder);
    if (!entries)
        return visit;
    ProjectScanner::Names names;
    for (const DetailedEntry& entry : *entries) {
        names.insert(entry.name);
        const URL url = folder.appending(entry.name);
        if (entry.kind == FileKind::directory && mayEnter(url))
            visit.subdirectories.push_back(url);
        else if (entry.facts && entry.facts->allocatedBytes >= largeFileThreshold)
            visit.largeFiles.push_back({url, entry.facts->allocatedBytes, entry.facts->modified});
    }
    visit.project = ProjectScanner::detectProject(folder, names);
    return visit;
}

void append(ProjectScanner::Result& result, Visit& visit) {
    if (visit.project)
        result.projects.push_back(std::move(*visit.project));
    std::ranges::move(visit.largeFiles, std::back_inserter(result.largeFiles));
}

/// Adds what one folder and those below it hold. Recursion ends at the scanner's depth.
void walk(const ProjectScanner& scanner,
          const URL& folder,
          int depth,
          const CancelToken& cancel,
          ProjectScanner::Result& result) {
    if (cancel.isCancelled())
        return;
    Visit visit = visitDirectory(folder, scanner.largeFileThreshold);
    const bool isProject = visit.project.has_value();
    append(result, visit);
    if (depth >= scanner.maxDepth)
        return;
    for (const URL& subdirectory : visit.subdirectories)
        if (!isProject || !platformSubdirectories.contains(subdirectory.lastPathComponent()))
            walk(scanner, subdirectory, depth + 1, cancel, result);
}

Project projectOf(Project::Kind kind, const URL& folder) {
    Project project;
    project.url = folder;
    project.name = ProjectScanner::displayName(folder);
    project.kind = kind;
    project.lastActivity = ProjectScanner::lastActivity(folder);
    return project;
}

/// With the platform folders of a project that may have both.
Project crossPlatformProject(Project::Kind kind, const URL& folder) {
    Project project = projectOf(kind, folder);
    const URL android = folder.appending("android");
    if (fileExists(android.appending(wrapperProperties)))
        project.androidDirectory = android;
    const URL ios = folder.appending("ios");
    if (fileExists(ios))
        project.iosDirectory = ios;
    return project;
}

std::optional<Project> packageProject(const URL& folder, const ProjectScanner::Names& names) {
    const auto text = readText(folder.appending("package.json"));
    const auto manifest = text ? PackageManifest::parse(*text) : std::nullopt;
    if (!manifest)
        return std::nullopt;
    const Project::Kind kind = manifest->usesExpo             ? Project::Kind::expo
                               : manifest->reactNativeVersion ? Project::Kind::reactNative
                                                              : Project::Kind::node;
    Project project = crossPlatformProject(kind, folder);
    project.reactNativeVersion = manifest->reactNativeVersion;
    project.usesExpo = manifest->usesExpo;
    project.packageManager = ProjectScanner::packageManager(*manifest, names);
    return project;
}

} // namespace

ProjectScanner::Result ProjectScanner::scan(const CancelToken& cancel) const {
    Result result;
    std::vector<URL> folders;
    // The folders of a platform are entered below a root, even if that is a project itself.
    for (const URL& root : roots) {
        Visit visit = visitDirectory(root, largeFileThreshold);
        append(result, visit);
        std::ranges::move(visit.subdirectories, std::back_inserter(folders));
    }
    std::vector<Result> found(folders.size());
    forEachLimited(
        widestWalk, folders.size(), cancel,
        [&](std::size_t index) {
            Result below;
            walk(*this, folders[index], 1, cancel, below);
            return below;
        },
        [&](std::size_t index, Result below) { found[index] = std::move(below); });
    for (Result& below : found) {
        std::ranges::move(below.projects, std::back_inserter(result.projects));
        std::ranges::move(below.largeFiles, std::back_inserter(result.largeFiles));
    }

    for (Project& project : result.projects)
        project.requirements = RequirementParser::requirements(project);
    std::ranges::stable_sort(result.projects, [](const Project& a, const Project& b) {
        return standardCompare(a.name, b.name) < 0;
    });
    std::ranges::stable_sort(result.largeFiles, std::ranges::greater{}, &LargeFile::sizeBytes);
    return result;
}

std::optional<Project> ProjectScanner::detectProject(const URL& folder, const Names& names) {
    if (names.contains("package.json"))
        if (auto project = packageProject(folder, names))
            return project;
    if (names.contains("pubspec.yaml"))
        return crossPlatformProject(Project::Kind::flutter, folder);
    const bool hasSettings =
        names.contains("settings.gradle") || names.contains("settings.gradle.kts");
    if (hasSettings && fileExists(folder.appending(wrapperProperties))) {
        Project project = projectOf(Project::Kind::android, folder);
        project.androidDirectory = folder;
        return project;
    }
    const bool hasXcodeProject = std::ranges::any_of(
        names, [](const std::string& name) { return name.ends_with(".xcodeproj"); });
    if (!names.contains("Podfile") && !hasXcodeProject)
        return std::nullopt;
    Project project = projectOf(Project::Kind::ios, folder);
    project.iosDirectory = folder;
    return project;
}

std::string ProjectScanner::displayName(const URL& folder) {
    std::string name = folder.lastPathComponent();
    if (!genericFolderNames.contains(lowercasedASCII(name)))
        return name;
    return folder.deletingLastPathComponent().lastPathComponent() + "/" + name;
}

std::optional<std::string> ProjectScanner::packageManager(const PackageManifest& manifest,
                                                          const Names& names) {
    if (manifest.packageManager) {
        const auto pieces = splitDroppingEmpty(*manifest.packageManager, '@');
        return pieces.empty() ? std::nullopt : std::optional(pieces.front());
    }
    for (const auto& [file, manager] : lockFiles)
        if (names.contains(file))
            return manager;
    return std::nullopt;
}

std::optional<Date> ProjectScanner::lastActivity(const URL& folder) {
    std::optional<Date> latest;
    for (const char* marker : activityMarkers)
        if (const auto info = fileInfo(folder.appending(marker), Links::dontFollow))
            latest = std::max(latest.value_or(info->modified), info->modified);
    return latest;
}

} // namespace tidewright
