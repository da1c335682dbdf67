#include "core/rules/Simulators.h"

#include "core/scan/DiskScanner.h"
#include "tests/support/RuleTesting.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace tidewright::test {

namespace {

using namespace std::chrono_literals;
using Simctl::Device;
using Simctl::Runtime;
using enum RequirementKind;

constexpr auto day = 24h;

const AppMatcher simulatorApp{"Simulator", {"com.apple.iphonesimulator"}, {}};

constexpr const char* phone = "com.apple.platform.iphonesimulator";
constexpr const char* watch = "com.apple.platform.watchsimulator";
constexpr const char* television = "com.apple.platform.appletvsimulator";

/// A runtime that nothing keeps but its being the newest; its identifiers follow from its key.
Runtime runtime(std::string key, std::string version, std::optional<std::string> platform = phone) {
    Runtime runtime;
    runtime.identifier = key;
    runtime.version = std::move(version);
    runtime.build = "build of " + key;
    runtime.runtimeIdentifier = "runtime " + key;
    runtime.platformIdentifier = std::move(platform);
    runtime.sizeBytes = 8'000'000'000;
    runtime.deletable = true;
    runtime.lastUsedAt = now - day * 100;
    runtime.state = "Ready";
    return runtime;
}

/// A simulator worth resetting.
Device device(std::string name) {
    Device device;
    device.udid = "udid of " + name;
    device.name = std::move(name);
    device.state = "Shutdown";
    device.isAvailable = true;
    device.dataPath = "/Users/dev/" + device.udid + "/data";
    device.dataPathSize = 2'000'000'000;
    device.lastBootedAt = now - day * 100;
    device.runtimeIdentifier = "runtime of " + device.name;
    return device;
}

Device unavailable(std::string name, std::optional<Int64> bytes) {
    Device unavailable = device(std::move(name));
    unavailable.isAvailable = false;
    unavailable.dataPathSize = bytes;
    return unavailable;
}

/// What each item of these rules has unless told otherwise.
ScanItem item(std::string ruleID, const std::string& key, Int64 bytes) {
    ScanItem item = usualItem(Category::xcode, std::move(ruleID), key);
    item.sizeSource = SizeSource::known(bytes);
    item.sizeBytes = bytes;
    item.risk = Risk::low;
    return item;
}

CleanMethod xcrun(std::vector<std::string> arguments) {
    return CleanMethod::command({"xcrun", std::move(arguments), std::nullopt, false});
}

ScanItem runtimeItem(const std::string& key,
                     const std::string& title,
                     Decision decision,
                     std::string reason) {
    ScanItem expected = item("ios.runtime", key, 8'000'000'000);
    expected.group = "Simulator runtimes";
    expected.title = title;
    expected.version = "build of " + key;
    expected.decision = decision;
    expected.reason = std::move(reason);
    expected.whatItIs =
        "The operating system image simulators of this version run on (about 8 GB).";
    expected.afterEffect = "Simulators on " + title +
                           " stop working until you download it again from Xcode → Settings → "
                           "Components.";
    expected.method = xcrun({"simctl", "runtime", "delete", key});
    expected.owner = simulatorApp;
    expected.lastUsed = now - day * 100;
    return expected;
}

ScanItem deviceItem(const Device& device, Decision decision, std::string reason) {
    ScanItem expected = item("ios.simulatorData", device.udid, device.dataPathSize.value_or(-1));
    expected.group = "Simulator data";
    expected.title = device.name;
    if (device.dataPath)
        expected.urls = {URL(*device.dataPath)};
    expected.decision = decision;
    expected.reason = std::move(reason);
    expected.whatItIs = "Apps, photos and settings stored inside this simulator.";
    expected.afterEffect = "The simulator stays in Xcode, reset to factory state (like Erase All "
                           "Content and Settings).";
    expected.method = xcrun({"simctl", "erase", device.udid});
    expected.owner = simulatorApp;
    expected.lastUsed = device.lastBootedAt;
    return expected;
}

ScanItem unavailableItem(std::string title, Int64 bytes) {
    ScanItem expected = item("ios.unavailableSimulators", "unavailable", bytes);
    expected.group = "Unavailable simulators";
    expected.title = std::move(title);
    expected.risk = Risk::safe;
    expected.decision = Decision::clean;
    expected.reason = "Their runtime was removed, so they can never boot again.";
    expected.whatItIs = "Simulators whose iOS runtime is no longer installed.";
    expected.afterEffect = "They disappear from Xcode's device list.";
    expected.method = xcrun({"simctl", "delete", "unavailable"});
    expected.owner = std::nullopt;
    return expected;
}

class SimulatorsTest : public testing::Test {
protected:
    SimulatorsTest() { context.now = now; }

    ScanContext context; ///< without a home: these rules must not ask the disk

    std::vector<ScanItem> runtimes() const { return SimulatorRuntimeRule().scan(context); }
    std::vector<ScanItem> devices() const { return SimulatorDeviceRule().scan(context); }
    std::vector<ScanItem> unavailables() const { return UnavailableSimulatorsRule().scan(context); }

    std::vector<ScanItem> afterTheScan(std::vector<ScanItem> items) const {
        return DiskScanner::applyInUseAndExclusions(std::move(items), context.inUse,
                                                    context.settings.exclusions);
    }
};

constexpr const char* unused =
    "No project script or booted simulator uses it. Last used 100 days ago.";

// What no rule speaks of

TEST_F(SimulatorsTest, WithoutXcodeThereIsNothing) {
    expectItems(runtimes(), {});
    expectItems(devices(), {});
    expectItems(unavailables(), {});
}

TEST_F(SimulatorsTest, SmallDevicesAreLeftAlone) {
    Device small = device("small");
    small.dataPathSize = 299'999'999;
    Device enough = device("enough");
    enough.dataPathSize = 300'000'000;
    Device empty = device("empty");
    empty.dataPathSize = 0;
    Device unmeasured = device("unmeasured");
    unmeasured.dataPathSize = std::nullopt;
    context.simulatorDevices = {small, enough, empty, unmeasured};
    expectItems(devices(),
                {deviceItem(enough, Decision::ask,
                            "Not booted for 100 days and no project script targets it.")});
}

TEST_F(SimulatorsTest, UnavailableDevicesAreTheBusinessOfOneRuleAndAvailableOnesOfTheOther) {
    context.simulatorDevices = {unavailable("gone", 2'000'000'000)};
    expectItems(devices(), {});
    EXPECT_EQ(unavailables().size(), 1U);
    context.simulatorDevices = {device("there")};
    EXPECT_EQ(devices().size(), 1U);
    expectItems(unavailables(), {});
}

TEST_F(SimulatorsTest, NoRuleRunsATool) {
    const TempHome home;
    for (const char* tool : {"xcrun", "simctl"})
        home.tool(fmt::format(".volta/bin/{}", tool), "touch \"$(dirname \"$0\")/ran\"");
    context.home = home.url();
    context.runner.locator = ToolLocator(home.url(), {});
    context.simulatorRuntimes = {runtime("A", "18.2")};
    context.simulatorDevices = {device("there"), unavailable("gone", 1)};
    EXPECT_EQ(runtimes().size() + devices().size() + unavailables().size(), 3U);
    EXPECT_FALSE(context.exists(home.path(".volta/bin/ran")));
}

// Runtimes

TEST_F(SimulatorsTest, OnlyTheNewestRuntimeOfAPlatformIsKeptForThat) {
    context.simulatorRuntimes = {runtime("A", "17.5"), runtime("B", "9.3", watch),
                                 runtime("C", "17.10"), runtime("D", "11.2", watch)};
    expectItems(runtimes(),
                {runtimeItem("C", "iOS 17.10", Decision::keep, "Newest iOS runtime."),
                 runtimeItem("A", "iOS 17.5", Decision::ask, unused),
                 runtimeItem("D", "watchOS 11.2", Decision::keep, "Newest watchOS runtime."),
                 runtimeItem("B", "watchOS 9.3", Decision::ask, unused)});
}

TEST_F(SimulatorsTest, TheOnlyRuntimeOfAPlatformIsKept) {
    Runtime old = runtime("A", "9.0", television);
    old.lastUsedAt = std::nullopt;
    context.simulatorRuntimes = {runtime("B", "18.2"), old};
    ScanItem expected = runtimeItem("A", "tvOS 9.0", Decision::keep, "Newest tvOS runtime.");
    expected.lastUsed = std::nullopt;
    expectItems(runtimes(),
                {runtimeItem("B", "iOS 18.2", Decision::keep, "Newest iOS runtime."), expected});
}

TEST_F(SimulatorsTest, UnknownPlatformsAreOne) {
    context.simulatorRuntimes = {
        runtime("A", "1.0", std::nullopt), runtime("B", "2.0", "com.apple.platform.other"),
        runtime("C", "1.5", "iOS"), runtime("D", "1.2", "com.apple.platform.xrsimulator")};
    expectItems(runtimes(),
                {runtimeItem("B", "Simulator 2.0", Decision::keep, "Newest Simulator runtime."),
                 runtimeItem("C", "Simulator 1.5", Decision::ask, unused),
                 runtimeItem("D", "visionOS 1.2", Decision::keep, "Newest visionOS runtime."),
                 runtimeItem("A", "Simulator 1.0", Decision::ask, unused)});
}

TEST_F(SimulatorsTest, OfEqualVersionsTheFirstIsTheNewestAndTheOrderStays) {
    context.simulatorRuntimes = {runtime("Z", "17.5"), runtime("B", "18.2"), runtime("A", "18.2"),
                                 runtime("C", "18.2")};
    expectItems(runtimes(), {runtimeItem("B", "iOS 18.2", Decision::keep, "Newest iOS runtime."),
                             runtimeItem("A", "iOS 18.2", Decision::ask, unused),
                             runtimeItem("C", "iOS 18.2", Decision::ask, unused),
                             runtimeItem("Z", "iOS 17.5", Decision::ask, unused)});
}

/// The older of two runtimes, which is kept by nothing else than what a case says.
struct OlderRuntime {
    const char* name;
    void (*arrange)(Runtime&, ScanContext&);
    Decision decision;
    const char* reason;
};

void PrintTo(const OlderRuntime& each, std::ostream* stream) { *stream << each.name; }

class OlderRuntimeTest : public testing::TestWithParam<OlderRuntime> {};

TEST_P(OlderRuntimeTest, IsJudged) {
    ScanContext context;
    context.now = now;
    Runtime older = runtime("A", "17.5");
    GetParam().arrange(older, context);
    context.simulatorRuntimes = {older, runtime("B", "18.2")};
    ScanItem expected = runtimeItem("A", "iOS 17.5", GetParam().decision, GetParam().reason);
    expected.lastUsed = older.lastUsedAt;
    const auto items = SimulatorRuntimeRule().scan(context);
    ASSERT_EQ(items.size(), 2U);
    expectItems({items.back()}, {expected});
}

const OlderRuntime olderRuntimes[] = {
    {"NeededByOne",
     [](Runtime&, ScanContext& context) { context.needed.add(iosRuntime, "runtime A", "Shop"); },
     Decision::keep, "Needed by Shop."},
    {"NeededByMany",
     [](Runtime&, ScanContext& context) {
         for (const char* owner : {"e", "c (iPhone 16)", "a", "booted iPhone 16", "d"})
             context.needed.add(iosRuntime, "runtime A", owner);
     },
     Decision::keep, "Needed by a, booted iPhone 16 and 3 more."},
    {"NeededAndBundled",
     [](Runtime& older, ScanContext& context) {
         older.deletable = false;
         context.needed.add(iosRuntime, "runtime A", "Shop");
     },
     Decision::keep, "Needed by Shop."},
    {"Bundled", [](Runtime& older, ScanContext&) { older.deletable = false; }, Decision::keep,
     "Bundled with Xcode; macOS doesn't allow deleting it."},
    {"NotSaidToBeDeletable", [](Runtime& older, ScanContext&) { older.deletable = std::nullopt; },
     Decision::ask, unused},
    {"OthersAreNeeded",
     [](Runtime&, ScanContext& context) {
         for (const char* other : {"runtime B", "runtime a", "runtime A2", "A", "17.5", "runtime"})
             context.needed.add(iosRuntime, other, "Shop");
     },
     Decision::ask, unused},
    {"NeededAsAnotherKind",
     [](Runtime&, ScanContext& context) { context.needed.add(simulator, "runtime A", "Shop"); },
     Decision::ask, unused},
    {"WithoutRuntimeIdentifier",
     [](Runtime& older, ScanContext& context) {
         older.runtimeIdentifier = std::nullopt;
         context.needed.add(iosRuntime, "A", "Shop");
     },
     Decision::ask, unused},
    {"NeverUsed", [](Runtime& older, ScanContext&) { older.lastUsedAt = std::nullopt; },
     Decision::ask, "No project script or booted simulator uses it."},
    {"UsedToday", [](Runtime& older, ScanContext&) { older.lastUsedAt = now - 1h; }, Decision::ask,
     "No project script or booted simulator uses it. Last used 0 days ago."},
    {"UsedYesterday", [](Runtime& older, ScanContext&) { older.lastUsedAt = now - day; },
     Decision::ask, "No project script or booted simulator uses it. Last used 1 days ago."},
};

INSTANTIATE_TEST_SUITE_P(All,
                         OlderRuntimeTest,
                         testing::ValuesIn(olderRuntimes),
                         [](const auto& each) { return std::string(each.param.name); });

TEST_F(SimulatorsTest, ANeededRuntimeIsKeptForThatAlsoWhenItIsTheNewest) {
    context.simulatorRuntimes = {runtime("A", "18.2")};
    context.needed.add(iosRuntime, "runtime A", "Shop");
    expectItems(runtimes(), {runtimeItem("A", "iOS 18.2", Decision::keep, "Needed by Shop.")});
}

TEST_F(SimulatorsTest, TheNewestRuntimeIsKeptForThatAlsoWhenItIsBundled) {
    Runtime bundled = runtime("A", "18.2");
    bundled.deletable = false;
    context.simulatorRuntimes = {bundled};
    expectItems(runtimes(), {runtimeItem("A", "iOS 18.2", Decision::keep, "Newest iOS runtime.")});
}

TEST_F(SimulatorsTest, ARuntimeMayLackSizeAndBuild) {
    Runtime bare = runtime("A", "18.2");
    bare.sizeBytes = std::nullopt;
    bare.build = std::nullopt;
    context.simulatorRuntimes = {bare};
    ScanItem expected = runtimeItem("A", "iOS 18.2", Decision::keep, "Newest iOS runtime.");
    expected.sizeSource = SizeSource::known(0);
    expected.sizeBytes = 0;
    expected.version = std::nullopt;
    expectItems(runtimes(), {expected});
}

// Data of simulators

struct DeviceCase {
    const char* name;
    void (*arrange)(Device&, ScanContext&);
    Decision decision;
    const char* reason;
};

void PrintTo(const DeviceCase& each, std::ostream* stream) { *stream << each.name; }

class DeviceTest : public testing::TestWithParam<DeviceCase> {};

TEST_P(DeviceTest, IsJudged) {
    ScanContext context;
    context.now = now;
    Device simulator = device("iPhone 16");
    GetParam().arrange(simulator, context);
    context.simulatorDevices = {simulator};
    ScanItem expected = deviceItem(simulator, GetParam().decision, GetParam().reason);
    if (simulator.state == "Booted")
        expected.inUseBy = "Simulator";
    expectItems(SimulatorDeviceRule().scan(context), {expected});
}

constexpr const char* notBooted = "Not booted for 100 days and no project script targets it.";

const DeviceCase deviceCases[] = {
    {"Booted", [](Device& device, ScanContext&) { device.state = "Booted"; }, Decision::keep,
     "Booted right now."},
    {"BootedAndTargeted",
     [](Device& device, ScanContext& context) {
         device.state = "Booted";
         context.needed.add(simulator, "iPhone 16", "Shop");
     },
     Decision::keep, "Booted right now."},
    {"BootedForTheFirstTime",
     [](Device& device, ScanContext&) {
         device.state = "Booted";
         device.lastBootedAt = std::nullopt;
     },
     Decision::keep, "Booted right now."},
    {"NotQuiteBooted", [](Device& device, ScanContext&) { device.state = "booted"; }, Decision::ask,
     notBooted},
    {"Booting", [](Device& device, ScanContext&) { device.state = "Booting"; }, Decision::ask,
     notBooted},
    {"Targeted",
     [](Device&, ScanContext& context) { context.needed.add(simulator, "iPhone 16", "Shop"); },
     Decision::keep, "Targeted by Shop."},
    {"TargetedByMany",
     [](Device&, ScanContext& context) {
         for (const char* owner : {"d", "b", "a", "c"})
             context.needed.add(simulator, "iPhone 16", owner);
     },
     Decision::keep, "Targeted by a, b and 2 more."},
    {"TargetedAndNeverBooted",
     [](Device& device, ScanContext& context) {
         device.lastBootedAt = std::nullopt;
         context.needed.add(simulator, "iPhone 16", "Shop");
     },
     Decision::keep, "Targeted by Shop."},
    {"OthersAreTargeted",
     [](Device& device, ScanContext& context) {
         for (const char* other : {"iPhone 16 Pro", "iPhone 1", "iphone 16", "iPhone  16"})
             context.needed.add(simulator, other, "Shop");
         context.needed.add(simulator, device.udid, "Shop");
         context.needed.add(iosRuntime, device.runtimeIdentifier, "Shop");
         context.needed.add(iosRuntime, device.name, "Shop");
     },
     Decision::ask, notBooted},
    {"NeverBooted", [](Device& device, ScanContext&) { device.lastBootedAt = std::nullopt; },
     Decision::ask, "Never booted and no project script targets it."},
    {"UsedJustNow", [](Device& device, ScanContext&) { device.lastBootedAt = now; }, Decision::keep,
     "Used today."},
    {"UsedToday", [](Device& device, ScanContext&) { device.lastBootedAt = now - day + 1s; },
     Decision::keep, "Used today."},
    {"UsedYesterday", [](Device& device, ScanContext&) { device.lastBootedAt = now - day; },
     Decision::keep, "Used yesterday."},
    {"UsedTwoDaysAgo", [](Device& device, ScanContext&) { device.lastBootedAt = now - day * 2; },
     Decision::keep, "Used 2 days ago."},
    {"Used59DaysAgo", [](Device& device, ScanContext&) { device.lastBootedAt = now - day * 59; },
     Decision::keep, "Used 59 days ago."},
    {"UsedAlmost60DaysAgo",
     [](Device& device, ScanContext&) { device.lastBootedAt = now - day * 60 + 1s; },
     Decision::keep, "Used 59 days ago."},
    {"NotBootedFor60Days",
     [](Device& device, ScanContext&) { device.lastBootedAt = now - day * 60; }, Decision::ask,
     "Not booted for 60 days and no project script targets it."},
    {"UsedInTheFuture", [](Device& device, ScanContext&) { device.lastBootedAt = now + day * 3; },
     Decision::keep, "Used -3 days ago."},
    {"TheSettingsForProjectsCountForNothing",
     [](Device& device, ScanContext& context) {
         context.settings.dormantProjectDays = 10;
         device.lastBootedAt = now - day * 59;
     },
     Decision::keep, "Used 59 days ago."},
    {"NorWhenTheyAreLonger",
     [](Device&, ScanContext& context) { context.settings.dormantProjectDays = 1000; },
     Decision::ask, notBooted},
    {"WithoutDataPath", [](Device& device, ScanContext&) { device.dataPath = std::nullopt; },
     Decision::ask, notBooted},
};

INSTANTIATE_TEST_SUITE_P(All, DeviceTest, testing::ValuesIn(deviceCases), [](const auto& each) {
    return std::string(each.param.name);
});

TEST_F(SimulatorsTest, DevicesComeInTheOrderOfTheListWithTheVersionOfTheirRuntime) {
    Device second = device("b");
    second.runtimeIdentifier = "runtime A";
    Device wrist = device("a");
    wrist.runtimeIdentifier = "runtime B";
    Device unlisted = device("c");
    unlisted.runtimeIdentifier = "A";
    context.simulatorDevices = {second, wrist, unlisted};
    Runtime unnamed = runtime("C", "16.4");
    unnamed.runtimeIdentifier = std::nullopt;
    context.simulatorRuntimes = {unnamed, runtime("A", "18.2"), runtime("B", "11.0", watch)};
    ScanItem expectedSecond = deviceItem(second, Decision::ask, notBooted);
    expectedSecond.version = "iOS 18.2";
    ScanItem expectedWrist = deviceItem(wrist, Decision::ask, notBooted);
    expectedWrist.version = "watchOS 11.0";
    expectItems(devices(),
                {expectedSecond, expectedWrist, deviceItem(unlisted, Decision::ask, notBooted)});
}

TEST_F(SimulatorsTest, TwoDevicesOfOneNameAreTwoItems) {
    Device twin = device("iPhone 16");
    twin.udid = "another";
    context.simulatorDevices = {device("iPhone 16"), twin};
    expectItems(DiskScanner::filtered(devices()),
                {deviceItem(device("iPhone 16"), Decision::ask, notBooted),
                 deviceItem(twin, Decision::ask, notBooted)});
}

// Simulators without a runtime

TEST_F(SimulatorsTest, UnavailableDevicesAreOneItem) {
    Device booted = unavailable("booted", 1);
    booted.state = "Booted";
    context.simulatorDevices = {unavailable("a", 2'000'000), device("available"),
                                unavailable("b", std::nullopt), booted};
    context.needed.add(simulator, "a", "Shop");
    expectItems(unavailables(), {unavailableItem("3 unavailable simulators", 2'000'001)});
}

TEST_F(SimulatorsTest, OneUnavailableDeviceIsSaidInThePlural) {
    context.simulatorDevices = {unavailable("a", 5'000'000'000)};
    expectItems(unavailables(), {unavailableItem("1 unavailable simulators", 5'000'000'000)});
    EXPECT_EQ(unavailables().front().id, "ios.unavailableSimulators:unavailable");
}

TEST_F(SimulatorsTest, SmallUnavailableDevicesAreNotShown) {
    const auto shown = [this](std::optional<Int64> bytes) {
        context.simulatorDevices = {unavailable("a", bytes), unavailable("b", std::nullopt)};
        EXPECT_EQ(unavailables().size(), 1U);
        return DiskScanner::filtered(unavailables()).size();
    };
    EXPECT_EQ(shown(std::nullopt), 0U);
    EXPECT_EQ(shown(999'999), 0U);
    EXPECT_EQ(shown(1'000'000), 1U);
}

// What the scan adds

TEST_F(SimulatorsTest, WhileTheSimulatorRunsTheScanKeepsWhatWouldBeAsked) {
    context.simulatorRuntimes = {runtime("A", "17.5"), runtime("B", "18.2")};
    Device booted = device("booted");
    booted.state = "Booted";
    context.simulatorDevices = {device("idle"), booted, unavailable("gone", 1)};
    context.inUse.runningBundleIdentifiers = {"com.apple.iphonesimulator"};
    const auto kept = [](ScanItem item) {
        item.decision = Decision::keep;
        item.reason = "Simulator is running. Quit it, then scan again to clean this.";
        item.inUseBy = "Simulator";
        return item;
    };
    expectItems(afterTheScan(runtimes()),
                {runtimeItem("B", "iOS 18.2", Decision::keep, "Newest iOS runtime."),
                 kept(runtimeItem("A", "iOS 17.5", Decision::ask, unused))});
    ScanItem bootedItem = deviceItem(booted, Decision::keep, "Booted right now.");
    bootedItem.inUseBy = "Simulator";
    expectItems(afterTheScan(devices()),
                {kept(deviceItem(device("idle"), Decision::ask, notBooted)), bootedItem});
    expectItems(afterTheScan(unavailables()), {unavailableItem("1 unavailable simulators", 1)});
}

TEST_F(SimulatorsTest, WhileXcodeRunsTheyMayGo) {
    context.simulatorDevices = {device("idle")};
    context.inUse.runningBundleIdentifiers = {"com.apple.dt.Xcode"};
    context.inUse.processCommandLines = {"com.apple.iphonesimulator"};
    expectItems(afterTheScan(devices()), {deviceItem(device("idle"), Decision::ask, notBooted)});
}

TEST_F(SimulatorsTest, AnExcludedDeviceIsKept) {
    const Device excluded = device("idle");
    context.simulatorDevices = {excluded};
    context.settings.exclusions = {URL("/Users/dev/udid of idle")};
    expectItems(afterTheScan(devices()),
                {deviceItem(excluded, Decision::keep, "You excluded this location in Settings.")});
}

} // namespace

} // namespace tidewright::test
