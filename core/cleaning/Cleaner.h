// Carries out what the user approved. Nothing that the scan saw is taken for granted: decisions,
// running applications and every path are checked again at the moment of work. Nothing that happens
// to one item stops the others.
#pragma once

#include "core/cleaning/CleanStream.h"
#include "core/cleaning/PathPolicy.h"
#include "core/model/InUseSnapshot.h"
#include "core/model/NeededSet.h"
#include "core/model/ScanItem.h"
#include "core/platform/Removal.h"
#include "core/platform/SystemLog.h"
#include "core/probes/ShellRunner.h"

namespace tidewright {

/// Why an approved item could not be removed.
struct CleanError {
    /// The system lets only applications with a special permission delete what is in this item.
    struct AppManagementRequired {
        std::string name; ///< the last component of the item's path
        bool operator==(const AppManagementRequired&) const = default;
    };
    std::variant<AppManagementRequired, FileActionError> choice;

    /// A sentence for the user.
    std::string errorDescription() const;

    bool operator==(const CleanError&) const = default;
};

/// A plain value for one cleanup.
struct Cleaner {
    PathPolicy policy;
    ShellRunner runner;
    URL logDirectory; ///< of the audit log
    NeededSet needed; ///< to be verified afterwards
    URL home;
    Logger logger{"com.tidewright.core", "clean"};

    /// Starts the cleanup at once on a thread of its own. The stream's last event is `completed`;
    /// to drop the stream is to cancel, see there.
    CleanStream clean(std::vector<ScanItem> items) const;

    /// The whole cleanup on the calling thread, which also delivers the events. A cancellation is
    /// looked at between items: what is under way ends, nothing further begins, and the last steps
    /// are done all the same, up to `completed`.
    void run(const std::vector<ScanItem>& items,
             const std::function<void(CleanEvent)>& deliver,
             const CancelToken& cancel) const;

    /// Handles one item. Blocks for as long as that takes.
    CleanOutcome execute(const ScanItem& item, const InUseSnapshot& inUse) const;

    /// The permission for every location of the item, or the first that is refused.
    Result<std::vector<ApprovedPath>, PolicyViolation> validate(const ScanItem& item) const;

    /// Removes one location for good. The second attempt is made with owner's permissions.
    static Result<void, CleanError> remove(const ApprovedPath& path);
};

} // namespace tidewright
