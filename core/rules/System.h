// The ordinary clutter of a developer's machine outside the build tools: downloads of the package
// manager, caches of editor, browsers and applications, logs, Trash, old installers, snapshots.
#pragma once

#include "core/scan/CleanupRule.h"

namespace tidewright {

struct HomebrewRule {
    std::string id = "system.homebrew";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct VSCodeRule {
    std::string id = "system.vscode";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct BrowserCacheRule {
    std::string id = "system.browserCaches";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct LogsRule {
    std::string id = "system.logs";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct AppCachesRule {
    std::string id = "system.appCaches";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct TrashRule {
    std::string id = "system.trash";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct OldDownloadsRule {
    std::string id = "system.oldDownloads";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct DockerRule {
    std::string id = "system.docker";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct TimeMachineSnapshotsRule {
    std::string id = "system.localSnapshots";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

} // namespace tidewright
