// What a project's package.json says, as far as anything here needs it.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tidewright {

struct PackageManifest {
    bool usesExpo = false;                         ///< the key is there, whatever its value
    std::optional<std::string> reactNativeVersion; ///< verbatim; absent when it is no text
    std::optional<std::string> packageManager;     ///< verbatim: "yarn@4.1.0"
    std::map<std::string, std::string> scripts;    ///< empty as soon as one of them is no text
    std::optional<std::string> nodeEngine;         ///< verbatim: a range stays a range

    /// Absent for anything but a JSON object. An entry under "dependencies" counts before one under
    /// "devDependencies". Pure.
    static std::optional<PackageManifest> parse(std::string_view text);

    bool operator==(const PackageManifest&) const = default;
};

} // namespace tidewright
