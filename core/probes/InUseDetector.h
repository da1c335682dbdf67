// Takes one cheap picture of what is running now.
#pragma once

#include "core/model/InUseSnapshot.h"
#include "core/probes/ShellRunner.h"

namespace tidewright {

struct InUseDetector {
    ShellRunner runner;

    /// Applications, the user's processes, emulators and booted simulators; what can't be told
    /// counts as not running. Blocks for as long as the tools take.
    InUseSnapshot snapshot(const CancelToken& cancel) const;

    /// The applications alone; hops to the main thread and back.
    static std::set<std::string> runningBundleIdentifiers();

    /// The command line of each process of the user; empty when `ps` fails.
    std::vector<std::string> processCommandLines(const CancelToken& cancel) const;

    /// The names of the emulators that such command lines belong to.
    static std::set<std::string> runningAVDs(const std::vector<std::string>& commandLines);
};

} // namespace tidewright
