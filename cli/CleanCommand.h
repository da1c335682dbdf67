// `tidewright clean`: scans, shows what it would clean, asks, cleans, and says what became of it.
#pragma once

#include "cli/Scanning.h"

namespace tidewright {

struct CleanOptions {
    bool recommended = false;          ///< everything that is recommended
    std::vector<std::string> ids = {}; ///< or these items
    bool dryRun = false;               ///< look, and touch nothing
    bool isConfirmed = false;          ///< don't ask
    bool json = false;
};

/// The items to clean, largest first; the error is a sentence for the user. One id that can't be
/// cleaned refuses them all.
Result<std::vector<ScanItem>, std::string> itemsToClean(const ScanReport& report,
                                                        const CleanOptions& options);

/// Returns the exit status.
int runClean(const ScanOptions& scanOptions, const CleanOptions& options);

} // namespace tidewright
