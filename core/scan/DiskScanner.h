// The whole of a scan: from what the machine knows to a finished report. Changes nothing on disk.
#pragma once

#include "core/model/ScanProgress.h"
#include "core/model/ScanReport.h"
#include "core/platform/SystemLog.h"
#include "core/projects/ProjectScanner.h"
#include "core/scan/CleanupRule.h"

namespace tidewright {

/// The one way in which a scan can fail.
struct ScanCancelled {
    bool operator==(const ScanCancelled&) const = default;
};

struct DiskScanner {
    /// Fractions only rise. Called from the thread that scans, never at the same time twice.
    using Progress = std::function<void(const ScanProgress&)>;

    DiskScanner(ScanSettings scanSettings,
                URL homeFolder,
                std::vector<CleanupRule> allRules,
                ShellRunner sharedRunner);

    ScanSettings settings;
    URL home;
    std::vector<CleanupRule> rules;
    ShellRunner runner; ///< shared by all probes and rules
    Logger logger;

    /// Blocks until the report is there, or until all its tasks have ended after a cancellation.
    /// Whatever else goes wrong means fewer items. Scans share nothing and may run at once.
    Result<ScanReport, ScanCancelled> scan(const Progress& progress,
                                           const CancelToken& cancel) const;

    /// The first step of a scan by itself.
    ProjectScanner::Result findProjects(const CancelToken& cancel) const;

    /// Where projects are looked for: the folders of the settings, or the home folder.
    std::vector<URL> projectRoots() const;

    /// What the projects, emulators and booted simulators of a machine need.
    static NeededSet neededSet(const std::vector<Project>& projects,
                               const AndroidEnvironment& android,
                               const std::vector<Simctl::Device>& devices,
                               const InUseSnapshot& inUse);

    /// Items in excluded locations and items of running applications are kept, with the reason;
    /// order and number stay.
    static std::vector<ScanItem> applyInUseAndExclusions(std::vector<ScanItem> items,
                                                         const InUseSnapshot& inUse,
                                                         const std::vector<URL>& exclusions);

    /// Drops what is below its own threshold and what repeats the id of an item that was kept.
    static std::vector<ScanItem> filtered(std::vector<ScanItem> items);

    /// By category, then group in standard order, then larger first; ties keep their order.
    static void sortForReport(std::vector<ScanItem>& items);
};

} // namespace tidewright
