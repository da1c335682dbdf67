// Reads from a project's own files which toolchain versions it declares or last used. Runs no tool.
//
// Each version found here is one that cleaning must not touch, so sources that can't be read, are
// not UTF-8 or are of another form than expected add nothing and stop nothing.
#pragma once

#include "core/model/Project.h"

namespace tidewright::RequirementParser {

using Requirements = std::vector<Project::Requirement>;

/// All of a project's, in the order in which they are found, each kind and version once.
Requirements requirements(const Project& project);

/// Gradle, NDK, compile SDK, build tools and CMake. The defaults of React Native fill in what the
/// build files leave open.
Requirements androidRequirements(const URL& androidDirectory, const URL& projectRoot);

/// The simulators that the scripts of package.json name.
Requirements simulatorRequirements(const URL& projectRoot);

/// From .nvmrc, .node-version and the engines of package.json; all of them count.
Requirements nodeRequirements(const URL& projectRoot);

/// The versions of CMake that earlier native builds really ran, at most one per build folder.
std::set<std::string> cmakeVersionsFromLastBuild(const URL& projectRoot,
                                                 const URL& androidDirectory);

/// The Gradle version of a wrapper's distribution.
std::optional<std::string> gradleVersion(std::string_view wrapperProperties);

/// What Gradle build files say, joined to one text; the first match of each counts.
std::optional<std::string> ndkVersion(std::string_view buildFiles);
std::optional<std::string> compileSdk(std::string_view buildFiles);
std::optional<std::string> buildToolsVersion(std::string_view buildFiles);
std::optional<std::string> cmakeVersion(std::string_view buildFiles);

/// The CMake whose path stands in a build.ninja of the Android SDK's native builds.
std::optional<std::string> cmakeOfBuild(std::string_view buildNinja);

/// The device names after "--simulator" in a script, quoted ones first.
std::vector<std::string> simulatorNames(std::string_view script);

/// The value of a key by a plain scan of lines, whatever section it stands in; without quotes.
std::optional<std::string> tomlValue(std::string_view key, std::string_view text);

} // namespace tidewright::RequirementParser
