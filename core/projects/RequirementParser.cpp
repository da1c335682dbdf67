#include "core/projects/RequirementParser.h"

#include "core/platform/Directory.h"
#include "core/platform/FileContents.h"
#include "core/projects/PackageManifest.h"
#include "core/support/Pattern.h"
#include "core/support/Text.h"

#include <algorithm>
#include <iterator>

namespace tidewright::RequirementParser {

namespace {

using Kind = RequirementKind;

constexpr const char* wrapperProperties = "gradle/wrapper/gradle-wrapper.properties";
// Joined in this order: what the first says beats what the others say.
constexpr std::array gradleBuildFiles{
    "build.gradle",         "build.gradle.kts",          "app/build.gradle",
    "app/build.gradle.kts", "gradle/libs.versions.toml",
};
constexpr const char* reactNativeCatalogue = "node_modules/react-native/gradle/libs.versions.toml";

// Where a requirement was read.
constexpr const char* fromWrapper = "gradle-wrapper.properties";
constexpr const char* fromBuildFiles = "build.gradle";
constexpr const char* fromReactNative = "react-native default";
constexpr const char* fromLastBuild = "last native build";
constexpr const char* fromScripts = "package.json scripts";
constexpr const char* fromEngines = "package.json engines";
constexpr std::array nodeVersionFiles{".nvmrc", ".node-version"}; // also their source

constexpr const char* nativeBuildFile = "build.ninja";
constexpr Int64 nativeBuildFileBytes = 262'144; // the paths of the tools stand near its start

std::optional<std::string> capture(const Pattern& pattern,
                                   std::string_view text,
                                   std::size_t group = 1) {
    const auto match = pattern.firstMatch(text);
    return match ? std::optional(match->at(group)) : std::nullopt;
}

std::string joinedBuildFiles(const URL& androidDirectory) {
    std::string joined;
    for (const char* path : gradleBuildFiles)
        if (const auto text = readText(androidDirectory.appending(path)))
            joined.append(joined.empty() ? "" : "\n").append(*text);
    return joined;
}

/// A project's own value or, without one, the default of React Native.
void addDeclaredOrDefault(Requirements& found,
                          Kind kind,
                          const std::optional<std::string>& declared,
                          std::string_view catalogueKey,
                          std::string_view catalogue) {
    if (declared)
        found.push_back({kind, *declared, fromBuildFiles});
    else if (const auto value = tomlValue(catalogueKey, catalogue))
        found.push_back({kind, *value, fromReactNative});
}

/// Where native builds leave their folders: in the app, and in each native module.
std::vector<URL> nativeBuildFolders(const URL& projectRoot, const URL& androidDirectory) {
    std::vector<URL> folders{androidDirectory.appending("app/.cxx")};
    const URL modules = projectRoot.appending("node_modules");
    for (const DirectoryEntry& entry :
         readDirectory(modules).value_or(std::vector<DirectoryEntry>{})) {
        const URL module = modules.appending(entry.name);
        if (!entry.name.starts_with('@')) {
            folders.push_back(module.appending("android/.cxx"));
            continue;
        }
        for (const DirectoryEntry& scoped :
             readDirectory(module).value_or(std::vector<DirectoryEntry>{}))
            folders.push_back(module.appending(scoped.name).appending("android/.cxx"));
    }
    return folders;
}

/// The first version that a build file below the folder tells. Links are not followed.
std::optional<std::string> cmakeOfBuildFolder(const URL& folder) {
    std::vector<URL> pending{folder};
    while (!pending.empty()) {
        const URL next = std::move(pending.back());
        pending.pop_back();
        for (const DirectoryEntry& entry :
             readDirectory(next).value_or(std::vector<DirectoryEntry>{})) {
            const URL url = next.appending(entry.name);
            if (entry.kind == FileKind::directory)
                pending.push_back(url);
            if (entry.kind != FileKind::regular || entry.name != nativeBuildFile)
                continue;
            const auto start = readFilePrefix(url, nativeBuildFileBytes);
            if (auto version = start ? cmakeOfBuild(*start) : std::nullopt)
                return version;
        }
    }
    return std::nullopt;
}

std::optional<PackageManifest> manifestOf(const URL& projectRoot) {
    const auto text = readText(projectRoot.appending("package.json"));
    return text ? PackageManifest::parse(*text) : std::nullopt;
}

} // namespace

Requirements requirements(const Project& project) {
    Requirements found;
    if (project.androidDirectory)
        found = androidRequirements(*project.androidDirectory, project.url);
    std::ranges::move(simulatorRequirements(project.url), std::back_inserter(found));
    std::ranges::move(nodeRequirements(project.url), std::back_inserter(found));
    std::set<std::pair<Kind, std::string>> seen;
    std::erase_if(found, [&](const Project::Requirement& requirement) {
        return !seen.emplace(requirement.kind, requirement.version).second;
    });
    return found;
}

Requirements androidRequirements(const URL& androidDirectory, const URL& projectRoot) {
    Requirements found;
    const auto wrapper = readText(androidDirectory.appending(wrapperProperties));
    if (const auto version = gradleVersion(wrapper.value_or("")))
        found.push_back({Kind::gradle, *version, fromWrapper});
    const std::string buildFiles = joinedBuildFiles(androidDirectory);
    const std::string catalogue =
        readText(projectRoot.appending(reactNativeCatalogue)).value_or("");
    addDeclaredOrDefault(found, Kind::ndk, ndkVersion(buildFiles), "ndkVersion", catalogue);
    addDeclaredOrDefault(found, Kind::compileSdk, compileSdk(buildFiles), "compileSdk", catalogue);
    addDeclaredOrDefault(found, Kind::buildTools, buildToolsVersion(buildFiles), "buildTools",
                         catalogue);
    if (const auto version = cmakeVersion(buildFiles))
        found.push_back({Kind::cmake, *version, fromBuildFiles});
    for (const std::string& version : cmakeVersionsFromLastBuild(projectRoot, androidDirectory))
        found.push_back({Kind::cmake, version, fromLastBuild});
    return found;
}

Requirements simulatorRequirements(const URL& projectRoot) {
    Requirements found;
    const auto manifest = manifestOf(projectRoot);
    if (!manifest)
        return found;
    for (const auto& [name, body] : manifest->scripts)
        for (std::string& device : simulatorNames(body))
            found.push_back({Kind::simulator, std::move(device), fromScripts});
    return found;
}

Requirements nodeRequirements(const URL& projectRoot) {
    Requirements found;
    for (const char* file : nodeVersionFiles) {
        std::string version = trimmed(readText(projectRoot.appending(file)).value_or(""));
        if (!version.empty())
            found.push_back({Kind::node, std::move(version), file});
    }
    const auto manifest = manifestOf(projectRoot);
    if (manifest && manifest->nodeEngine)
        found.push_back({Kind::node, *manifest->nodeEngine, fromEngines});
    return found;
}

std::set<std::string> cmakeVersionsFromLastBuild(const URL& projectRoot,
                                                 const URL& androidDirectory) {
    std::set<std::string> versions;
    for (const URL& folder : nativeBuildFolders(projectRoot, androidDirectory))
        if (auto version = cmakeOfBuildFolder(folder))
            versions.insert(std::move(*version));
    return versions;
}

std::optional<std::string> gradleVersion(std::string_view properties) {
    static const Pattern pattern(R"(gradle-([0-9]+(?:\.[0-9]+)*)-(?:bin|all)\.zip)");
    return capture(pattern, properties);
}

std::optional<std::string> ndkVersion(std::string_view buildFiles) {
    static const Pattern pattern(R"(ndkVersion\s*=?\s*["']([0-9][0-9.]*)["'])");
    return capture(pattern, buildFiles);
}

std::optional<std::string> compileSdk(std::string_view buildFiles) {
    static const Pattern pattern(R"(compileSdk(?:Version)?\s*=?\s*["']?([0-9]+(?:\.[0-9]+)?))");
    return capture(pattern, buildFiles);
}

std::optional<std::string> buildToolsVersion(std::string_view buildFiles) {
    static const Pattern pattern(
        R"(buildToolsVersion\s*=?\s*["']([0-9][0-9.]*(?:-rc[0-9]+)?)["'])");
    return capture(pattern, buildFiles);
}

std::optional<std::string> cmakeVersion(std::string_view buildFiles) {
    static const Pattern pattern(
        R"(cmake\s*\{[^}]*?version\s*=?\s*["']([0-9]+\.[0-9]+\.[0-9]+)["'])",
        Pattern::DotMatches::anything);
    return capture(pattern, buildFiles);
}

std::optional<std::string> cmakeOfBuild(std::string_view buildNinja) {
    static const Pattern pattern(R"(sdk/cmake/([0-9]+\.[0-9]+\.[0-9]+)/)");
    return capture(pattern, buildNinja);
}

std::vector<std::string> simulatorNames(std::string_view script) {
    static const Pattern quoted(R"(--simulator[= ]+(["'])(.+?)\1)");
    static const Pattern bare(R"(--simulator[= ]+([^\s"']+))");
    std::vector<std::string> names;
    for (const auto& match : quoted.allMatches(script))
        names.push_back(match.at(2));
    for (const auto& match : bare.allMatches(script))
        names.push_back(match.at(1));
    return names;
}

std::optional<std::string> tomlValue(std::string_view key, std::string_view text) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos || equals == 0 || equals + 1 == line.size())
            continue; // two pieces are needed
        if (trimmed(line.substr(0, equals), " \t") == key)
            return trimmed(trimmed(line.substr(equals + 1), " \t"), "\"' ");
    }
    return std::nullopt;
}

} // namespace tidewright::RequirementParser
