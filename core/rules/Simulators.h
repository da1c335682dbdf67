// Simulator runtimes and simulators. The rules know them from the context alone: sizes come from
// Xcode's own tool, which is also the only one to clean them, and the disk is not touched.
#pragma once

#include "core/scan/CleanupRule.h"

namespace tidewright {

struct SimulatorRuntimeRule {
    std::string id = "ios.runtime";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct SimulatorDeviceRule {
    std::string id = "ios.simulatorData";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct UnavailableSimulatorsRule {
    std::string id = "ios.unavailableSimulators";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

} // namespace tidewright
