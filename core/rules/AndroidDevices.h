// What Android development leaves outside the SDK: emulators, caches and logs of Gradle, folders of
// Android Studio, heap dumps. An emulator is a device with the user's apps on it, so removing one
// is never recommended. The SDK's own packages are in Android.h.
#pragma once

#include "core/scan/CleanupRule.h"

namespace tidewright {

struct AVDSnapshotsRule {
    std::string id = "android.avdSnapshots";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct AVDRule {
    std::string id = "android.avd";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct GradleVersionCacheRule {
    std::string id = "gradle.versionCache";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct GradleWrapperDistRule {
    std::string id = "gradle.wrapperDist";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct GradleDaemonLogsRule {
    std::string id = "gradle.daemonLogs";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct AndroidStudioLeftoversRule {
    std::string id = "androidStudio.leftovers";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct HeapDumpRule {
    std::string id = "ide.heapDumps";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

} // namespace tidewright
