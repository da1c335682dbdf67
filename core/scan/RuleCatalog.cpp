#include "core/scan/RuleCatalog.h"

#include "core/rules/Android.h"
#include "core/rules/AndroidDevices.h"
#include "core/rules/JavaScript.h"
#include "core/rules/Projects.h"
#include "core/rules/Simulators.h"
#include "core/rules/System.h"
#include "core/rules/Xcode.h"

namespace tidewright::RuleCatalog {

namespace {

using enum Category;

std::vector<CleanupRule> makeAll() {
    return {
        cleanupRule(SystemImagesRule{}, android, "SystemImagesRule"),
        cleanupRule(NDKRule{}, android, "NDKRule"),
        cleanupRule(BuildToolsRule{}, android, "BuildToolsRule"),
        cleanupRule(CMakeRule{}, android, "CMakeRule"),
        cleanupRule(AVDSnapshotsRule{}, android, "AVDSnapshotsRule"),
        cleanupRule(AVDRule{}, android, "AVDRule"),
        cleanupRule(GradleVersionCacheRule{}, android, "GradleVersionCacheRule"),
        cleanupRule(GradleWrapperDistRule{}, android, "GradleWrapperDistRule"),
        cleanupRule(GradleDaemonLogsRule{}, android, "GradleDaemonLogsRule"),
        cleanupRule(AndroidStudioLeftoversRule{}, android, "AndroidStudioLeftoversRule"),
        cleanupRule(HeapDumpRule{}, android, "HeapDumpRule"),
        cleanupRule(DerivedDataRule{}, xcode, "DerivedDataRule"),
        cleanupRule(DeviceSupportRule{}, xcode, "DeviceSupportRule"),
        cleanupRule(XcodeArchivesRule{}, xcode, "XcodeArchivesRule"),
        cleanupRule(SimulatorRuntimeRule{}, xcode, "SimulatorRuntimeRule"),
        cleanupRule(SimulatorDeviceRule{}, xcode, "SimulatorDeviceRule"),
        cleanupRule(UnavailableSimulatorsRule{}, xcode, "UnavailableSimulatorsRule"),
        cleanupRule(XcodeCachesRule{}, xcode, "XcodeCachesRule"),
        cleanupRule(CocoaPodsRule{}, xcode, "CocoaPodsRule"),
        cleanupRule(ExtraXcodeRule{}, xcode, "ExtraXcodeRule"),
        cleanupRule(NPMRule{}, javascript, "NPMRule"),
        cleanupRule(YarnRule{}, javascript, "YarnRule"),
        cleanupRule(PNPMRule{}, javascript, "PNPMRule"),
        cleanupRule(BunRule{}, javascript, "BunRule"),
        cleanupRule(ExpoRule{}, javascript, "ExpoRule"),
        cleanupRule(NodeGypRule{}, javascript, "NodeGypRule"),
        cleanupRule(BundlerTempRule{}, javascript, "BundlerTempRule"),
        cleanupRule(DotslashRule{}, javascript, "DotslashRule"),
        cleanupRule(NodeVersionsRule{}, javascript, "NodeVersionsRule"),
        cleanupRule(HomebrewRule{}, system, "HomebrewRule"),
        cleanupRule(VSCodeRule{}, system, "VSCodeRule"),
        cleanupRule(BrowserCacheRule{}, system, "BrowserCacheRule"),
        cleanupRule(LogsRule{}, system, "LogsRule"),
        cleanupRule(AppCachesRule{}, system, "AppCachesRule"),
        cleanupRule(TrashRule{}, system, "TrashRule"),
        cleanupRule(OldDownloadsRule{}, system, "OldDownloadsRule"),
        cleanupRule(DockerRule{}, system, "DockerRule"),
        cleanupRule(TimeMachineSnapshotsRule{}, system, "TimeMachineSnapshotsRule"),
        cleanupRule(ProjectBuildOutputsRule{}, projects, "ProjectBuildOutputsRule"),
        cleanupRule(DormantNodeModulesRule{}, projects, "DormantNodeModulesRule"),
    };
}

} // namespace

const std::vector<CleanupRule>& all() {
    static const std::vector<CleanupRule> rules = makeAll();
    return rules;
}

} // namespace tidewright::RuleCatalog
