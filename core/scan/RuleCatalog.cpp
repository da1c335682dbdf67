#include "core/scan/RuleCatalog.h"

#include "core/rules/System.h"

namespace tidewright::RuleCatalog {

namespace {

using enum Category;

/// The place of a rule that has not been built: it finds nothing.
CleanupRule notBuilt(std::string id, Category category, std::string name) {
    return {std::move(id), category, std::move(name),
            [](const ScanContext&) { return std::vector<ScanItem>{}; }};
}

std::vector<CleanupRule> makeAll() {
    return {
        notBuilt("android.systemImage", android, "SystemImagesRule"),
        notBuilt("android.ndk", android, "NDKRule"),
        notBuilt("android.buildTools", android, "BuildToolsRule"),
        notBuilt("android.cmake", android, "CMakeRule"),
        notBuilt("android.avdSnapshots", android, "AVDSnapshotsRule"),
        notBuilt("android.avd", android, "AVDRule"),
        notBuilt("gradle.versionCache", android, "GradleVersionCacheRule"),
        notBuilt("gradle.wrapperDist", android, "GradleWrapperDistRule"),
        notBuilt("gradle.daemonLogs", android, "GradleDaemonLogsRule"),
        notBuilt("androidStudio.leftovers", android, "AndroidStudioLeftoversRule"),
        notBuilt("ide.heapDumps", android, "HeapDumpRule"),
        notBuilt("xcode.derivedData", xcode, "DerivedDataRule"),
        notBuilt("xcode.deviceSupport", xcode, "DeviceSupportRule"),
        notBuilt("xcode.archives", xcode, "XcodeArchivesRule"),
        notBuilt("ios.runtime", xcode, "SimulatorRuntimeRule"),
        notBuilt("ios.simulatorData", xcode, "SimulatorDeviceRule"),
        notBuilt("ios.unavailableSimulators", xcode, "UnavailableSimulatorsRule"),
        notBuilt("xcode.caches", xcode, "XcodeCachesRule"),
        notBuilt("ios.podCaches", xcode, "CocoaPodsRule"),
        notBuilt("xcode.extraInstalls", xcode, "ExtraXcodeRule"),
        notBuilt("js.npm", javascript, "NPMRule"),
        notBuilt("js.yarn", javascript, "YarnRule"),
        notBuilt("js.pnpm", javascript, "PNPMRule"),
        notBuilt("js.bun", javascript, "BunRule"),
        notBuilt("js.expo", javascript, "ExpoRule"),
        notBuilt("js.nodeGyp", javascript, "NodeGypRule"),
        notBuilt("js.bundlerTemp", javascript, "BundlerTempRule"),
        notBuilt("js.dotslash", javascript, "DotslashRule"),
        notBuilt("js.nodeVersions", javascript, "NodeVersionsRule"),
        cleanupRule(HomebrewRule{}, system, "HomebrewRule"),
        cleanupRule(VSCodeRule{}, system, "VSCodeRule"),
        cleanupRule(BrowserCacheRule{}, system, "BrowserCacheRule"),
        cleanupRule(LogsRule{}, system, "LogsRule"),
        cleanupRule(AppCachesRule{}, system, "AppCachesRule"),
        cleanupRule(TrashRule{}, system, "TrashRule"),
        cleanupRule(OldDownloadsRule{}, system, "OldDownloadsRule"),
        cleanupRule(DockerRule{}, system, "DockerRule"),
        cleanupRule(TimeMachineSnapshotsRule{}, system, "TimeMachineSnapshotsRule"),
        notBuilt("project.buildOutputs", projects, "ProjectBuildOutputsRule"),
        notBuilt("project.nodeModules", projects, "DormantNodeModulesRule"),
    };
}

} // namespace

const std::vector<CleanupRule>& all() {
    static const std::vector<CleanupRule> rules = makeAll();
    return rules;
}

} // namespace tidewright::RuleCatalog
