// Which tools the program may run.
#pragma once

#include "core/probes/ShellRunner.h"

namespace tidewright {

/// Whether the folder is a home that was made to try things out on.
bool isSampleHome(const URL& home);

/// Only the tools of the home, and behind them those that every system has. What else is installed
/// on the machine, such as a package manager, would clean up for its real user.
ToolLocator confinedTo(const URL& home, const ToolLocator& tools);

/// The runner for everything. In a sample home it is confined to that.
ShellRunner runnerFor(const URL& home, const Environment& environment);

} // namespace tidewright
