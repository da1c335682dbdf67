// `tidewright explain ID`: everything about one item.
#pragma once

#include "cli/CommandState.h"
#include "cli/Terminal.h"

namespace tidewright {

/// Why, what it is, what happens afterwards, how it is cleaned and where it lies.
std::string explanationText(const ScanItem& item, const Terminal& terminal);

/// Scans and explains the item with this id; returns the exit status.
int runExplain(const ScanOptions& options, const std::string& id, bool json);

} // namespace tidewright
