// Lists installed applications with their size and last use. They are only shown: nothing here or
// elsewhere removes one.
#pragma once

#include "core/model/AppUsage.h"
#include "core/scan/DirectorySizer.h"

namespace tidewright {

struct AppUsageScanner {
    /// The folders of applications of all users and of the one with this home.
    explicit AppUsageScanner(const URL& home);

    std::vector<URL> folders; ///< which hold applications

    /// The applications in all the folders, largest first, at most six measured at a time. Folders
    /// that can't be read hold none; after a cancellation the list is not complete.
    std::vector<AppUsage> scan(const DirectorySizer& sizer, const CancelToken& cancel) const;

    /// What has the name of an application in a folder and one level below, hidden entries left
    /// out, in the order that the file system gives.
    static std::vector<URL> apps(const URL& folder);

    /// Absent for an application of the system itself.
    static std::optional<AppUsage> usage(const URL& application,
                                         const DirectorySizer& sizer,
                                         const CancelToken& cancel);

    /// Equal sizes keep their order.
    static void sortLargestFirst(std::vector<AppUsage>& apps);
};

} // namespace tidewright
