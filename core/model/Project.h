// A software project of the user's and what it declares to need.
#pragma once

#include "core/model/RequirementKind.h"

namespace tidewright {

struct Project {
    enum class Kind { reactNative, expo, flutter, android, ios, node };

    /// One declared need.
    struct Requirement {
        RequirementKind kind = RequirementKind::gradle;
        std::string version; ///< for a simulator the device's name
        std::string source;  ///< where it was read; plays no part in any decision

        bool operator==(const Requirement&) const = default;
        static constexpr auto fields() {
            return std::tuple{field("kind", &Requirement::kind),
                              field("version", &Requirement::version),
                              field("source", &Requirement::source)};
        }
    };

    URL url; ///< the project's identity
    std::string name;
    Kind kind = Kind::reactNative;
    std::optional<std::string> reactNativeVersion; ///< verbatim: a range stays a range
    std::optional<std::string> packageManager;
    bool usesExpo = false;
    std::optional<URL> androidDirectory; ///< holds the Gradle wrapper
    std::optional<URL> iosDirectory;
    std::optional<Date> lastActivity;
    std::vector<Requirement> requirements;

    /// Whole calendar days; absent without any known activity.
    std::optional<int> daysSinceActivity(Date now) const;

    bool operator==(const Project&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("url", &Project::url),
                          field("name", &Project::name),
                          field("kind", &Project::kind),
                          field("reactNativeVersion", &Project::reactNativeVersion),
                          field("packageManager", &Project::packageManager),
                          field("usesExpo", &Project::usesExpo),
                          field("androidDirectory", &Project::androidDirectory),
                          field("iosDirectory", &Project::iosDirectory),
                          field("lastActivity", &Project::lastActivity),
                          field("requirements", &Project::requirements)};
    }
};

template <>
struct EnumCases<Project::Kind> {
    static constexpr std::array cases{
        std::pair{Project::Kind::reactNative, std::string_view("React Native")},
        std::pair{Project::Kind::expo, std::string_view("Expo")},
        std::pair{Project::Kind::flutter, std::string_view("Flutter")},
        std::pair{Project::Kind::android, std::string_view("Android")},
        std::pair{Project::Kind::ios, std::string_view("iOS")},
        std::pair{Project::Kind::node, std::string_view("Node")},
    };
};

} // namespace tidewright
