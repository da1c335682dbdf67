// What Xcode and its helpers leave in the home folder: build products, symbols of devices,
// archives, caches, downloads of dependencies, and copies of Xcode itself. Simulators are in
// Simulators.h.
#pragma once

#include "core/scan/CleanupRule.h"

namespace tidewright {

struct DerivedDataRule {
    std::string id = "xcode.derivedData";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct DeviceSupportRule {
    std::string id = "xcode.deviceSupport";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct XcodeArchivesRule {
    std::string id = "xcode.archives";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct XcodeCachesRule {
    std::string id = "xcode.caches";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct CocoaPodsRule {
    std::string id = "ios.podCaches";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct ExtraXcodeRule {
    std::string id = "xcode.extraInstalls";
    std::vector<ScanItem> scan(const ScanContext& context) const;
    /// The same of any folder of applications; `scan` looks at the one of all users.
    std::vector<ScanItem> scanApplications(const URL& folder, const ScanContext& context) const;
};

} // namespace tidewright
