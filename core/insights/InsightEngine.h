// Says in a few sentences what matters most after a scan, each with its size and one next step.
#pragma once

#include "core/model/ScanReport.h"
#include "core/scan/ScanSettings.h"

namespace tidewright {

struct InsightEngine {
    ScanSettings settings;

    /// At most one insight of each kind, the most severe first, then the one that would free most;
    /// equal ones in the order of the kinds. Depends on nothing but what it is given and, for the
    /// days in which applications idle, on the user's time zone.
    std::vector<Insight> insights(const DiskSpace& disk,
                                  const std::vector<ScanItem>& items,
                                  const std::vector<AppUsage>& apps,
                                  const std::vector<LargeFile>& largeFiles,
                                  Date now) const;
};

} // namespace tidewright
