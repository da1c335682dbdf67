#include "core/cleaning/Verifier.h"

#include "core/platform/FileInfo.h"
#include "core/probes/AndroidEnvironment.h"

#include <fmt/format.h>

namespace tidewright {

namespace {

using std::string_view;
using Checks = std::vector<VerificationCheck>;

/// A part of the SDK of which projects need certain versions.
struct Part {
    RequirementKind kind;
    string_view title;
    string_view folder; ///< in the SDK; each version has a folder of its own in it
    string_view file;   ///< without which a version is of no use
};

constexpr std::array parts{
    Part{RequirementKind::ndk, "NDK", "ndk", "source.properties"},
    Part{RequirementKind::buildTools, "Build tools", "build-tools", "aapt2"},
    Part{RequirementKind::cmake, "CMake", "cmake", "bin/cmake"},
};

VerificationCheck checkVersion(const URL& sdk,
                               const Part& part,
                               const std::string& version,
                               const std::string& owners) {
    const bool passed =
        fileExists(sdk.appending(fmt::format("{}/{}/{}", part.folder, version, part.file)));
    return {.name = fmt::format("{} {}", part.title, version),
            .passed = passed,
            .detail = passed ? fmt::format("Present ({})", owners)
                             : fmt::format("Missing: needed by {}", owners)};
}

void addVersions(Checks& checks, const URL& sdk, const NeededSet& needed) {
    for (const Part& part : parts)
        for (const std::string& version : needed.versions(part.kind))
            checks.push_back(
                checkVersion(sdk, part, version, needed.ownerSummary(part.kind, version)));
}

void addEmulators(Checks& checks,
                  const URL& sdk,
                  const std::vector<AndroidEnvironment::AVD>& avds) {
    for (const AndroidEnvironment::AVD& avd : avds) {
        if (!avd.systemImage)
            continue;
        const std::string& image = *avd.systemImage;
        const bool passed = fileExists(sdk.appending("system-images/" + image));
        checks.push_back({.name = "Emulator " + avd.name,
                          .passed = passed,
                          .detail = passed ? fmt::format("Image {} present", image)
                                           : fmt::format("Broken: image {} is missing", image)});
    }
}

void addDebugBridge(Checks& checks, const URL& sdk) {
    const URL tools = sdk.appending("platform-tools");
    if (!fileExists(tools))
        return;
    const bool passed = fileExists(tools.appending("adb"));
    checks.push_back(
        {.name = "adb",
         .passed = passed,
         .detail = passed ? "Present (Android tooling)" : "Missing: needed by Android tooling"});
}

} // namespace

std::vector<VerificationCheck> Verifier::run(const Environment& environment) const {
    const AndroidEnvironment found = AndroidEnvironment::discover(home, environment);
    if (!found.sdk)
        return {};
    Checks checks;
    addVersions(checks, *found.sdk, needed);
    addEmulators(checks, *found.sdk, found.avds);
    addDebugBridge(checks, *found.sdk);
    return checks;
}

} // namespace tidewright
