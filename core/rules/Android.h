// The packages inside the Android SDK: system images, NDKs, build tools, CMake. Each comes back
// only by a new download, so what a project, an emulator or a build could want is kept. Emulators
// and what else lies outside the SDK are in AndroidDevices.h.
#pragma once

#include "core/scan/CleanupRule.h"

namespace tidewright {

struct SystemImagesRule {
    std::string id = "android.systemImage";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct NDKRule {
    std::string id = "android.ndk";
    std::vector<ScanItem> scan(const ScanContext& context) const;

    /// The name of an NDK's folder; of the old single install the revision that is written in it,
    /// and its name where there is none.
    static std::string version(const URL& folder);
};

struct BuildToolsRule {
    std::string id = "android.buildTools";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct CMakeRule {
    std::string id = "android.cmake";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

} // namespace tidewright
