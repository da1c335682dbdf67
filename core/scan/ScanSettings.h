// The user's thresholds and folders for one scan.
#pragma once

#include "core/support/Bytes.h"
#include "core/support/Fields.h"

namespace tidewright {

struct ScanSettings {
    Int64 dormantProjectDays = 0;     ///< without activity for so long, a project is dormant
    Int64 unusedAppDays = 0;          ///< without use for so long, an application is unused
    Int64 oldDownloadDays = 0;        ///< from this age a download is old
    Int64 lowSpaceThreshold = 0;      ///< bytes free below which health is low
    Int64 criticalSpaceThreshold = 0; ///< bytes free below which health is critical
    Int64 largeTrashThreshold = 0;    ///< bytes from which the Trash is large
    std::vector<URL> projectRoots;    ///< where projects are looked for; empty: the home folder
    std::vector<URL> exclusions;      ///< locations that are never offered for cleaning

    bool operator==(const ScanSettings&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("dormantProjectDays", &ScanSettings::dormantProjectDays),
                          field("unusedAppDays", &ScanSettings::unusedAppDays),
                          field("oldDownloadDays", &ScanSettings::oldDownloadDays),
                          field("lowSpaceThreshold", &ScanSettings::lowSpaceThreshold),
                          field("criticalSpaceThreshold", &ScanSettings::criticalSpaceThreshold),
                          field("largeTrashThreshold", &ScanSettings::largeTrashThreshold),
                          field("projectRoots", &ScanSettings::projectRoots),
                          field("exclusions", &ScanSettings::exclusions)};
    }
};

} // namespace tidewright
