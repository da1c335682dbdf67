#include "core/insights/AppUsageScanner.h"

namespace tidewright {

std::vector<AppUsage> AppUsageScanner::scan(const DirectorySizer&, const CancelToken&) const {
    return {};
}

} // namespace tidewright
