// The one ordered list of all rules.
#pragma once

#include "core/scan/CleanupRule.h"

namespace tidewright::RuleCatalog {

/// All rules in the order in which they are started; made at the first call, then unchanged.
const std::vector<CleanupRule>& all();

} // namespace tidewright::RuleCatalog
