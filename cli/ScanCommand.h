// `tidewright scan`: scans the home folder and prints the report.
#pragma once

#include <string>
#include <vector>

namespace tidewright {

struct ScanOptions {
    std::vector<std::string> roots;      ///< where to look for projects instead of the home folder
    std::vector<std::string> exclusions; ///< locations to leave alone
    bool json = false;
};

/// Returns the exit status.
int runScan(const ScanOptions& options);

} // namespace tidewright
