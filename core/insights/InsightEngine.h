// Says in a few sentences what matters most after a scan.
#pragma once

#include "core/model/ScanReport.h"
#include "core/scan/ScanSettings.h"

namespace tidewright {

struct InsightEngine {
    ScanSettings settings;

    /// Not built yet: has nothing to say.
    std::vector<Insight> insights(const DiskSpace& disk,
                                  const std::vector<ScanItem>& items,
                                  const std::vector<AppUsage>& apps,
                                  const std::vector<LargeFile>& largeFiles,
                                  Date now) const;
};

} // namespace tidewright
