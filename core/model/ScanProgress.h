// How far a scan is.
#pragma once

#include "core/support/Fields.h"

namespace tidewright {

struct ScanProgress {
    enum class Phase { discovering, applyingRules, measuring, finishing };

    Phase phase = Phase::discovering;
    double fraction = 0; ///< from 0 to 1, only rising over a scan
    std::string message; ///< for the user

    bool operator==(const ScanProgress&) const = default;
};

} // namespace tidewright
