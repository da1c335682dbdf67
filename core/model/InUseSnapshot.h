// A picture of what was running at one moment, and the questions asked of it. All are pure.
#pragma once

#include "core/model/AppMatcher.h"
#include "core/model/Simctl.h"

namespace tidewright {

struct InUseSnapshot {
    std::set<std::string> runningBundleIdentifiers;
    std::vector<std::string> processCommandLines; ///< of the user's processes, in the order of `ps`
    std::set<std::string> runningAVDs;            ///< names of running Android emulators
    std::vector<Simctl::Device> bootedSimulators;

    /// Whether one of the matcher's identifiers runs, or a command line holds one of its patterns.
    bool isRunning(const AppMatcher& matcher) const;

    /// A short name of the first process whose command line holds `path`.
    std::optional<std::string> processUsing(const std::string& path) const;

    /// A short name for a process: its executable's, or the package's for a tool run through npx.
    static std::string describe(const std::string& commandLine);

    /// Whether a Gradle daemon of exactly this version runs.
    bool isGradleVersionRunning(const std::string& version) const;

    bool operator==(const InUseSnapshot&) const = default;
    static constexpr auto fields() {
        return std::tuple{
            field("runningBundleIdentifiers", &InUseSnapshot::runningBundleIdentifiers),
            field("processCommandLines", &InUseSnapshot::processCommandLines),
            field("runningAVDs", &InUseSnapshot::runningAVDs),
            field("bootedSimulators", &InUseSnapshot::bootedSimulators)};
    }
};

} // namespace tidewright
