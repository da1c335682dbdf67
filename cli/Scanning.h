// Scanning on behalf of a command: with a live bar, and Ctrl-C.
#pragma once

#include "cli/CommandState.h"

namespace tidewright {

/// Scans with a bar on standard error. Where there is no report, the reason has been said, and the
/// error is the exit status.
Result<std::shared_ptr<const ScanReport>, int> scanForCommand(CommandState& state,
                                                              const CancelToken& cancel);

/// The same with a state of its own.
Result<std::shared_ptr<const ScanReport>, int> scanForCommand(const ScanOptions& options);

/// The projects alone; where the search was stopped the error is the exit status.
Result<std::vector<Project>, int> findProjectsForCommand(CommandState& state);

} // namespace tidewright
