#include "core/insights/InsightEngine.h"

namespace tidewright {

std::vector<Insight> InsightEngine::insights(const DiskSpace&,
                                             const std::vector<ScanItem>&,
                                             const std::vector<AppUsage>&,
                                             const std::vector<LargeFile>&,
                                             Date) const {
    return {};
}

} // namespace tidewright
