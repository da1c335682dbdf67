// The result of one scan: a value held in memory and never stored.
#pragma once

#include "core/model/AppUsage.h"
#include "core/model/DiskSpace.h"
#include "core/model/Insight.h"
#include "core/model/LargeFile.h"
#include "core/model/NeededSet.h"
#include "core/model/Project.h"
#include "core/model/ScanItem.h"

#include <functional>

namespace tidewright {

struct ScanReport {
    std::vector<ScanItem> items; ///< measured, filtered, without duplicate ids, in report order
    std::vector<Project> projects;
    NeededSet needed;
    std::vector<AppUsage> apps;
    std::vector<LargeFile> largeFiles;
    std::vector<Insight> insights;
    DiskSpace disk;                    ///< at the end of the scan
    std::vector<std::string> avdNames; ///< in the order of the Android environment
    Date scannedAt;                    ///< at the end of the scan
    Duration duration{0};              ///< from its start to its end

    /// The items of one category, in report order.
    std::vector<ScanItem> itemsIn(Category category) const;
    /// The sum of `sizeBytes` over the items for which `holds` is true.
    Int64 total(const std::function<bool(const ScanItem&)>& holds) const;
    Int64 recommendedBytes() const; ///< of all items to clean
    Int64 optionalBytes() const;    ///< of all items to ask about

    bool operator==(const ScanReport&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("items", &ScanReport::items),
                          field("projects", &ScanReport::projects),
                          field("needed", &ScanReport::needed),
                          field("apps", &ScanReport::apps),
                          field("largeFiles", &ScanReport::largeFiles),
                          field("insights", &ScanReport::insights),
                          field("disk", &ScanReport::disk),
                          field("avdNames", &ScanReport::avdNames),
                          field("scannedAt", &ScanReport::scannedAt),
                          field("duration", &ScanReport::duration)};
    }
};

} // namespace tidewright
