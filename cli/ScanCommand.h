// `tidewright scan`: scans the home folder and prints the report.
#pragma once

#include "cli/CommandState.h"

namespace tidewright {

/// Returns the exit status.
int runScan(const ScanOptions& options, bool json);

} // namespace tidewright
