// The report of a scan as people read it in a terminal.
#pragma once

#include "cli/Terminal.h"
#include "core/model/ScanReport.h"

namespace tidewright {

/// Insights, then items by category and group in aligned columns, then what can be freed. No line
/// is wider than the terminal; without one, lines are as long as they need to be and plain.
std::string reportText(const ScanReport& report, const Terminal& terminal);

} // namespace tidewright
