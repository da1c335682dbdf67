// Scanning on behalf of a command: with the options that several commands share, a live bar, and
// Ctrl-C.
#pragma once

#include "core/scan/DiskScanner.h"

#include <string>
#include <vector>

namespace tidewright {

struct ScanOptions {
    std::vector<std::string> roots;      ///< where to look for projects instead of the home folder
    std::vector<std::string> exclusions; ///< locations to leave alone
};

/// A scanner of the user's home folder with these options; the error is a sentence for the user.
Result<DiskScanner, std::string> makeScanner(const ScanOptions& options);

/// Scans on the home folder with a bar on standard error. Where there is no report, the reason has
/// been said, and the error is the exit status.
Result<ScanReport, int> scanForCommand(const ScanOptions& options);

/// The same with a scanner that is there, and somebody else's Ctrl-C.
Result<ScanReport, int> scanForCommand(const DiskScanner& scanner, const CancelToken& cancel);

} // namespace tidewright
