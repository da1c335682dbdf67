// `tidewright history`: past cleanups, those from the window included.
#pragma once

#include "app/state/HistoryStore.h"
#include "cli/Terminal.h"

namespace tidewright {

/// A line for each cleanup, the latest first, then what was freed in all.
std::string historyText(const std::vector<HistoryEntry>& entries,
                        Int64 totalFreed,
                        const Terminal& terminal);

/// Returns the exit status.
int runHistory(bool json);

} // namespace tidewright
