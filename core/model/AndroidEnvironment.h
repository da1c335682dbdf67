// Where the Android SDK and the emulators of a user are.
#pragma once

#include "core/support/Fields.h"

namespace tidewright {

struct AndroidEnvironment {
    /// One emulator.
    struct AVD {
        std::string name; ///< the `.avd` folder's name without the extension
        URL directory;    ///< the `.avd` folder
        URL iniFile;      ///< beside the folder; computed, so it may not exist
        /// Platform and tag, "android-34/google_apis"; the ABI is not part of it.
        std::optional<std::string> systemImage;

        bool operator==(const AVD&) const = default;
        static constexpr auto fields() {
            return std::tuple{field("name", &AVD::name), field("directory", &AVD::directory),
                              field("iniFile", &AVD::iniFile),
                              field("systemImage", &AVD::systemImage)};
        }
    };

    std::optional<URL> sdk;
    URL avdHome;                                 ///< always set, even if the folder does not exist
    std::vector<AVD> avds;                       ///< by name in plain string order
    std::set<std::string> studioDataDirectories; ///< of the installed Android Studios

    /// Finds all of it under a home folder. This and the next two only read; what can't be read
    /// counts as absent (core/probes/AndroidEnvironment.cpp).
    static AndroidEnvironment discover(const URL& home,
                                       const std::map<std::string, std::string>& environment);

    /// The image that an emulator boots, from the text of its `config.ini`.
    static std::optional<std::string> systemImage(std::string_view config);

    /// What the installed Android Studios call their data folders, in the two application folders.
    static std::set<std::string> installedStudioDataDirectories(const URL& home);

    bool operator==(const AndroidEnvironment&) const = default;
    static constexpr auto fields() {
        return std::tuple{
            field("sdk", &AndroidEnvironment::sdk), field("avdHome", &AndroidEnvironment::avdHome),
            field("avds", &AndroidEnvironment::avds),
            field("studioDataDirectories", &AndroidEnvironment::studioDataDirectories)};
    }
};

} // namespace tidewright
