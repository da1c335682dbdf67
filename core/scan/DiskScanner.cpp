#include "core/scan/DiskScanner.h"

#include "core/insights/AppUsageScanner.h"
#include "core/insights/InsightEngine.h"
#include "core/platform/StandardFolders.h"
#include "core/probes/InUseDetector.h"
#include "core/probes/Simctl.h"
#include "core/scan/DirectorySizer.h"
#include "core/support/ChildTask.h"
#include "core/support/Collation.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <unordered_set>

namespace tidewright {

namespace {

using Phase = ScanProgress::Phase;
using Clock = std::chrono::steady_clock;

constexpr int projectDepth = 6;
constexpr Int64 largeFileThreshold = 1'000'000'000;
constexpr int measuringWidth = 6;
constexpr double measuringStart = 0.3;
constexpr double measuringShare = 0.6;

const char* const excludedReason = "You excluded this location in Settings.";
const char* const runningReason = " is running. Quit it, then scan again to clean this.";

/// All rules at once; their items in the order in which the rules finish.
std::vector<ScanItem> runRules(const std::vector<CleanupRule>& rules, const ScanContext& context) {
    std::vector<ScanItem> items;
    forEachLimited(
        rules.size(), rules.size(), context.cancel,
        [&](std::size_t index) { return rules[index].scan(context); },
        [&](std::size_t, std::vector<ScanItem> found) {
            std::ranges::move(found, std::back_inserter(items));
        });
    return items;
}

bool isExcluded(const ScanItem& item, const std::vector<URL>& exclusions) {
    return std::ranges::any_of(item.urls, [&](const URL& url) {
        return std::ranges::any_of(exclusions,
                                   [&](const URL& excluded) { return url.isInside(excluded); });
    });
}

} // namespace

DiskScanner::DiskScanner(ScanSettings scanSettings,
                         URL homeFolder,
                         std::vector<CleanupRule> allRules,
                         ShellRunner sharedRunner)
    : settings(std::move(scanSettings)),
      home(std::move(homeFolder)),
      rules(std::move(allRules)),
      runner(std::move(sharedRunner)),
      logger{"com.tidewright.core", "scan"} {}

Result<ScanReport, ScanCancelled> DiskScanner::scan(const Progress& progress,
                                                    const CancelToken& cancel) const {
    const auto start = Clock::now();
    progress({Phase::discovering, 0.02, "Finding your projects…"});
    const DirectorySizer sizer;

    // Joined in reverse order of their start wherever this function returns.
    ChildTask<ProjectScanner::Result> projectsTask([&] { return findProjects(cancel); });
    ChildTask<InUseSnapshot> inUseTask([&] { return InUseDetector{runner}.snapshot(cancel); });
    ChildTask<std::vector<Simctl::Device>> devicesTask(
        [&] { return Simctl::devices(runner, cancel); });
    ChildTask<std::vector<Simctl::Runtime>> runtimesTask(
        [&] { return Simctl::runtimes(runner, cancel); });
    ChildTask<std::vector<AppUsage>> appsTask(
        [&] { return AppUsageScanner{home}.scan(sizer, cancel); });

    ScanContext context;
    context.android = AndroidEnvironment::discover(home, processEnvironment());
    ProjectScanner::Result found = projectsTask.await();
    context.inUse = inUseTask.await();
    context.simulatorDevices = devicesTask.await();
    context.simulatorRuntimes = runtimesTask.await();
    if (cancel.isCancelled())
        return Failure(ScanCancelled{});

    context.needed =
        neededSet(found.projects, context.android, context.simulatorDevices, context.inUse);
    logger.info(fmt::format("Found {} projects, {} AVDs, {} runtimes", found.projects.size(),
                            context.android.avds.size(), context.simulatorRuntimes.size()));
    progress({Phase::applyingRules, 0.25, "Checking what your projects need…"});
    context.home = home;
    context.temporaryDirectory = temporaryDirectory();
    context.settings = settings;
    context.projects = std::move(found.projects);
    context.runner = runner;
    context.now = currentDate();
    context.cancel = cancel;

    std::vector<ScanItem> items =
        applyInUseAndExclusions(runRules(rules, context), context.inUse, settings.exclusions);
    if (cancel.isCancelled())
        return Failure(ScanCancelled{});

    progress({Phase::measuring, measuringStart, "Measuring sizes…"});
    items = sizer.measure(
        std::move(items), measuringWidth,
        [&](std::size_t done, std::size_t total) {
            const double share = static_cast<double>(done) * measuringShare /
                                 static_cast<double>(std::max<std::size_t>(total, 1));
            progress({Phase::measuring, measuringStart + share,
                      fmt::format("Measuring sizes… {} of {}", done, total)});
        },
        cancel);
    if (cancel.isCancelled())
        return Failure(ScanCancelled{});

    progress({Phase::finishing, 0.95, "Looking for anything unusual…"});
    ScanReport report;
    report.items = filtered(std::move(items));
    sortForReport(report.items);
    report.disk = DiskSpace::current().value_or(DiskSpace{});
    report.apps = appsTask.await();
    report.largeFiles = std::move(found.largeFiles);
    report.insights = InsightEngine{settings}.insights(report.disk, report.items, report.apps,
                                                       report.largeFiles, currentDate());
    progress({Phase::finishing, 1.0, "Done"});
    report.projects = std::move(context.projects);
    report.needed = std::move(context.needed);
    for (const AndroidEnvironment::AVD& avd : context.android.avds)
        report.avdNames.push_back(avd.name);
    report.duration = Clock::now() - start;
    report.scannedAt = currentDate();
    return report;
}

ProjectScanner::Result DiskScanner::findProjects(const CancelToken& cancel) const {
    return ProjectScanner{projectRoots(), projectDepth, largeFileThreshold}.scan(cancel);
}

std::vector<URL> DiskScanner::projectRoots() const {
    return settings.projectRoots.empty() ? std::vector{home} : settings.projectRoots;
}

NeededSet DiskScanner::neededSet(const std::vector<Project>& projects,
                                 const AndroidEnvironment& android,
                                 const std::vector<Simctl::Device>& devices,
                                 const InUseSnapshot& inUse) {
    NeededSet needed;
    for (const Project& project : projects)
        for (const Project::Requirement& requirement : project.requirements)
            needed.add(requirement.kind, requirement.version, project.name);
    for (const AndroidEnvironment::AVD& avd : android.avds)
        if (avd.systemImage)
            needed.add(RequirementKind::systemImage, *avd.systemImage, "emulator " + avd.name);
    // A simulator that a project names needs the runtime of every device of that name.
    for (const std::string& name : needed.versions(RequirementKind::simulator))
        for (const Simctl::Device& device : devices)
            if (device.name == name)
                for (const std::string& owner : needed.owners(RequirementKind::simulator, name))
                    needed.add(RequirementKind::iosRuntime, device.runtimeIdentifier,
                               fmt::format("{} ({})", owner, name));
    for (const Simctl::Device& device : inUse.bootedSimulators)
        needed.add(RequirementKind::iosRuntime, device.runtimeIdentifier, "booted " + device.name);
    return needed;
}

std::vector<ScanItem> DiskScanner::applyInUseAndExclusions(std::vector<ScanItem> items,
                                                           const InUseSnapshot& inUse,
                                                           const std::vector<URL>& exclusions) {
    std::vector<URL> excluded;
    for (const URL& url : exclusions)
        excluded.push_back(url.standardized());
    for (ScanItem& item : items) {
        if (!isSelectable(item.decision))
            continue;
        if (isExcluded(item, excluded))
            item.keep(excludedReason);
        else if (item.owner && inUse.isRunning(*item.owner))
            item.keep(item.owner->displayName + runningReason, item.owner->displayName);
    }
    return items;
}

std::vector<ScanItem> DiskScanner::filtered(std::vector<ScanItem> items) {
    std::unordered_set<std::string> seen;
    std::erase_if(items, [&](const ScanItem& item) {
        return item.sizeBytes < item.hideBelowBytes || !seen.insert(item.id).second;
    });
    return items;
}

void DiskScanner::sortForReport(std::vector<ScanItem>& items) {
    std::ranges::stable_sort(items, [](const ScanItem& a, const ScanItem& b) {
        if (a.category != b.category)
            return a.category < b.category;
        return standardCompare(a.group, b.group) < 0;
    });
    // By size only among items of the very same group: groups that are spelled differently but
    // compare the same keep their order.
    for (auto first = items.begin(); first != items.end();) {
        const auto last = std::find_if(first, items.end(), [&](const ScanItem& item) {
            return item.category != first->category || item.group != first->group;
        });
        std::stable_sort(first, last, [](const ScanItem& a, const ScanItem& b) {
            return a.sizeBytes > b.sizeBytes;
        });
        first = last;
    }
}

} // namespace tidewright
