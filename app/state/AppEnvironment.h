// What the state needs of the machine, as values and functions that tests and the command line
// replace.
#pragma once

#include "app/platform/FolderPicker.h"
#include "app/state/DiskMonitor.h"
#include "core/scan/DiskScanner.h"

namespace tidewright {

/// Why there is no report.
struct ScanFailure {
    std::optional<std::string> sentence; ///< for the user; absent: it was cancelled
};

struct AppEnvironment {
    URL home;
    URL temporaryDirectory;
    URL historyDirectory;  ///< holds the history file
    URL auditLogDirectory; ///< holds the logs of cleanups
    std::vector<CleanupRule> rules;
    ShellRunner runner;
    std::function<bool()> hasFullDiskAccess;
    /// Whether this system has that protection at all, so that its absence is worth telling.
    bool protectsUserFiles = false;
    DiskMonitorSystem monitorSystem;
    /// Shows the locations in the file manager.
    std::function<void(const std::vector<URL>&)> reveal;
    /// Opens a path or an address with what the user has chosen for it.
    std::function<void(const std::string&)> openLocation;
    /// Whether the program is started when the user logs in.
    std::function<bool()> opensAtLogin;
    /// The error is a sentence for the user.
    std::function<Result<void, std::string>(bool)> setOpensAtLogin;
    std::function<void()> askToPostNotifications;
    /// As `pickFolders` of the platform.
    std::function<void(const FolderQuestion&, FolderAnswer)> pickFolders;
    /// On another thread.
    std::function<Result<ScanReport, ScanFailure>(
        const DiskScanner&, const DiskScanner::Progress&, const CancelToken&)>
        scan;

    /// Of the user whose process this is.
    static AppEnvironment current();
};

} // namespace tidewright
