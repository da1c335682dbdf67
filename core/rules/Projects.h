// What lies inside the user's projects and can be made again: build outputs and installed packages.
// Nothing here is recommended: an item is the user's call at best.
#pragma once

#include "core/scan/CleanupRule.h"

namespace tidewright {

struct ProjectBuildOutputsRule {
    std::string id = "project.buildOutputs";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct DormantNodeModulesRule {
    std::string id = "project.nodeModules";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

} // namespace tidewright
