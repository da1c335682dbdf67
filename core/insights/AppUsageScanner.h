// Lists installed applications with their size and last use.
#pragma once

#include "core/model/AppUsage.h"
#include "core/scan/DirectorySizer.h"

namespace tidewright {

struct AppUsageScanner {
    URL home; ///< whose applications count besides those of all users

    /// Not built yet: finds nothing.
    std::vector<AppUsage> scan(const DirectorySizer& sizer, const CancelToken& cancel) const;
};

} // namespace tidewright
