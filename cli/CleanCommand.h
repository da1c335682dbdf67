// `tidewright clean`: scans, shows what it would clean, asks, cleans, and says what became of it.
#pragma once

#include "cli/CommandState.h"

namespace tidewright {

struct CleanOptions {
    bool recommended = false;          ///< everything that is recommended
    std::vector<std::string> ids = {}; ///< or these items
    bool dryRun = false;               ///< look, and touch nothing
    bool isConfirmed = false;          ///< don't ask
    bool json = false;
};

/// The ids of the items that were meant; the error is a sentence for the user. One that can't be
/// cleaned refuses them all.
Result<std::vector<std::string>, std::string> idsToClean(const std::vector<ScanItem>& items,
                                                         const std::vector<std::string>& given);

/// Returns the exit status.
int runClean(const ScanOptions& scanOptions, const CleanOptions& options);

} // namespace tidewright
