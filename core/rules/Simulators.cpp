#include "core/rules/Simulators.h"

#include "core/rules/ItemKind.h"
#include "core/support/Collation.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>

namespace tidewright {

namespace {

using Simctl::Device;
using Simctl::Runtime;

// Runtimes

constexpr ItemKind runtimeKind{
    .category = Category::xcode,
    .group = "Simulator runtimes",
    .risk = Risk::low,
    .whatItIs = "The operating system image simulators of this version run on (about 8 GB).",
};
constexpr auto runtimeAfterEffect = "Simulators on {} stop working until you download it again "
                                    "from Xcode → Settings → Components.";
constexpr auto neededReason = "Needed by {}.";
constexpr auto newestReason = "Newest {} runtime.";
constexpr const char* bundledReason = "Bundled with Xcode; macOS doesn't allow deleting it.";
constexpr const char* unusedReason = "No project script or booted simulator uses it.";
constexpr auto lastUsedReason = " Last used {} days ago."; // behind unusedReason

// Data of simulators

constexpr Int64 worthResettingBytes = 300'000'000;
constexpr int recentDays = 60; // whatever the settings say of projects
constexpr ItemKind deviceKind{
    .category = Category::xcode,
    .group = "Simulator data",
    .risk = Risk::low,
    .whatItIs = "Apps, photos and settings stored inside this simulator.",
    .afterEffect = "The simulator stays in Xcode, reset to factory state (like Erase All Content "
                   "and Settings).",
};
constexpr const char* bootedReason = "Booted right now.";
constexpr auto targetedReason = "Targeted by {}.";
constexpr const char* neverBootedReason = "Never booted and no project script targets it.";
constexpr const char* usedTodayReason = "Used today.";
constexpr const char* usedYesterdayReason = "Used yesterday.";
constexpr auto usedDaysAgoReason = "Used {} days ago.";
constexpr auto notBootedReason = "Not booted for {} days and no project script targets it.";

// Simulators without a runtime

constexpr ItemKind unavailableKind{
    .category = Category::xcode,
    .group = "Unavailable simulators",
    .risk = Risk::safe,
    .decision = Decision::clean,
    .reason = "Their runtime was removed, so they can never boot again.",
    .whatItIs = "Simulators whose iOS runtime is no longer installed.",
    .afterEffect = "They disappear from Xcode's device list.",
};
constexpr auto unavailableTitle = "{} unavailable simulators"; // also for one
constexpr const char* unavailableKey = "unavailable";

CleanMethod xcrun(std::vector<std::string> arguments) {
    return CleanMethod::command({.tool = "xcrun",
                                 .arguments = std::move(arguments),
                                 .workingDirectory = std::nullopt,
                                 .fallbackToRemove = false});
}

struct Verdict {
    Decision decision = Decision::keep;
    std::string reason;
};

Verdict judge(const Runtime& runtime,
              const std::string& newestIdentifier,
              const ScanContext& context) {
    using enum RequirementKind;
    if (runtime.runtimeIdentifier &&
        !context.needed.owners(iosRuntime, *runtime.runtimeIdentifier).empty())
        return {Decision::keep,
                fmt::format(neededReason,
                            context.needed.ownerSummary(iosRuntime, *runtime.runtimeIdentifier))};
    if (runtime.identifier == newestIdentifier)
        return {Decision::keep, fmt::format(newestReason, runtime.platformName())};
    if (runtime.deletable == false)
        return {Decision::keep, bundledReason};
    std::string reason = unusedReason;
    if (const auto days = context.days(runtime.lastUsedAt))
        reason += fmt::format(lastUsedReason, *days);
    return {Decision::ask, std::move(reason)};
}

std::string fullName(const Runtime& runtime) {
    return fmt::format("{} {}", runtime.platformName(), runtime.version);
}

ScanItem runtimeItem(const std::string& ruleID, const Runtime& runtime, Verdict verdict) {
    ScanItem::Parts parts = partsOf(runtimeKind, ruleID, {});
    parts.title = fullName(runtime);
    parts.version = runtime.build;
    parts.sizeSource = SizeSource::known(runtime.sizeBytes.value_or(0));
    parts.decision = verdict.decision;
    parts.reason = std::move(verdict.reason);
    parts.afterEffect = fmt::format(runtimeAfterEffect, parts.title);
    parts.method = xcrun({"simctl", "runtime", "delete", runtime.identifier});
    parts.owner = AppMatcher::simulator;
    parts.lastUsed = runtime.lastUsedAt;
    parts.idSuffix = runtime.identifier;
    return ScanItem::make(std::move(parts));
}

Verdict judge(const Device& device, const ScanContext& context) {
    using enum RequirementKind;
    if (device.isBooted())
        return {Decision::keep, bootedReason};
    if (context.needed.contains(simulator, device.name))
        return {Decision::keep,
                fmt::format(targetedReason, context.needed.ownerSummary(simulator, device.name))};
    const auto days = context.days(device.lastBootedAt);
    if (!days)
        return {Decision::ask, neverBootedReason};
    if (*days == 0)
        return {Decision::keep, usedTodayReason};
    if (*days == 1)
        return {Decision::keep, usedYesterdayReason};
    if (*days < recentDays)
        return {Decision::keep, fmt::format(usedDaysAgoReason, *days)};
    return {Decision::ask, fmt::format(notBootedReason, *days)};
}

/// By the identifier under which devices are listed.
std::map<std::string, const Runtime*> byIdentifier(const std::vector<Runtime>& runtimes) {
    std::map<std::string, const Runtime*> result;
    for (const Runtime& runtime : runtimes)
        if (runtime.runtimeIdentifier)
            result.try_emplace(*runtime.runtimeIdentifier, &runtime);
    return result;
}

/// `runtime` may be null: the tool need not list it.
ScanItem deviceItem(const std::string& ruleID,
                    const Device& device,
                    const Runtime* runtime,
                    Verdict verdict) {
    ScanItem::Parts parts = partsOf(deviceKind, ruleID, {});
    parts.title = device.name;
    if (runtime != nullptr)
        parts.version = fullName(*runtime);
    if (device.dataPath)
        parts.urls = {URL(*device.dataPath)};
    parts.sizeSource = SizeSource::known(device.dataPathSize.value_or(0));
    parts.decision = verdict.decision;
    parts.reason = std::move(verdict.reason);
    parts.method = xcrun({"simctl", "erase", device.udid});
    parts.owner = AppMatcher::simulator;
    parts.lastUsed = device.lastBootedAt;
    parts.idSuffix = device.udid;
    ScanItem item = ScanItem::make(std::move(parts));
    if (device.isBooted())
        item.inUseBy = AppMatcher::simulator.displayName;
    return item;
}

} // namespace

std::vector<ScanItem> SimulatorRuntimeRule::scan(const ScanContext& context) const {
    std::vector<Runtime> runtimes = context.simulatorRuntimes;
    std::ranges::stable_sort(runtimes, [](const Runtime& a, const Runtime& b) {
        return standardCompare(a.version, b.version) > 0;
    });
    std::map<std::string_view, std::string> newest; // per platform the first, by identifier
    std::vector<ScanItem> items;
    for (const Runtime& runtime : runtimes) {
        const std::string& newestIdentifier =
            newest.try_emplace(runtime.platformName(), runtime.identifier).first->second;
        items.push_back(runtimeItem(id, runtime, judge(runtime, newestIdentifier, context)));
    }
    return items;
}

std::vector<ScanItem> SimulatorDeviceRule::scan(const ScanContext& context) const {
    const auto runtimes = byIdentifier(context.simulatorRuntimes);
    std::vector<ScanItem> items;
    for (const Device& device : context.simulatorDevices) {
        if (!device.isAvailable || device.dataPathSize.value_or(0) < worthResettingBytes)
            continue;
        const auto found = runtimes.find(device.runtimeIdentifier);
        const Runtime* const runtime = found == runtimes.end() ? nullptr : found->second;
        items.push_back(deviceItem(id, device, runtime, judge(device, context)));
    }
    return items;
}

std::vector<ScanItem> UnavailableSimulatorsRule::scan(const ScanContext& context) const {
    int count = 0;
    Int64 bytes = 0;
    for (const Device& device : context.simulatorDevices) {
        if (device.isAvailable)
            continue;
        ++count;
        bytes += device.dataPathSize.value_or(0);
    }
    if (count == 0)
        return {};
    ScanItem::Parts parts = partsOf(unavailableKind, id, {});
    parts.title = fmt::format(unavailableTitle, count);
    parts.sizeSource = SizeSource::known(bytes);
    parts.method = xcrun({"simctl", "delete", "unavailable"});
    parts.idSuffix = unavailableKey;
    return {ScanItem::make(std::move(parts))};
}

} // namespace tidewright
