#include "core/model/NeededSet.h"

#include "core/scan/DiskScanner.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tidewright {
namespace {

using Texts = std::vector<std::string>;

constexpr RequirementKind ndk = RequirementKind::ndk;
constexpr RequirementKind cmake = RequirementKind::cmake;

TEST(NeededSet, StartsEmpty) {
    const NeededSet needed;
    for (const RequirementKind kind : allCases<RequirementKind>()) {
        EXPECT_TRUE(needed.isEmpty(kind)) << title(kind);
        EXPECT_EQ(needed.versions(kind), Texts{}) << title(kind);
    }
    EXPECT_FALSE(needed.contains(ndk, "27.0"));
    EXPECT_EQ(needed.owners(ndk, "27.0"), Texts{});
    EXPECT_EQ(needed.ownerSummary(ndk, "27.0"), "");
}

TEST(NeededSet, RemembersWhoNeedsWhichVersion) {
    NeededSet needed;
    needed.add(ndk, "27.0", "shop");
    needed.add(ndk, "27.0", "app");
    needed.add(ndk, "27.0", "shop");
    needed.add(ndk, "26.1", "shop");
    EXPECT_EQ(needed.owners(ndk, "27.0"), (Texts{"app", "shop"}));
    EXPECT_EQ(needed.owners(ndk, "26.1"), Texts{"shop"});
    EXPECT_EQ(needed.owners(cmake, "27.0"), Texts{});
    EXPECT_EQ(needed.ownerSummary(ndk, "27.0"), "app and shop");
    EXPECT_FALSE(needed.isEmpty(ndk));
    EXPECT_TRUE(needed.isEmpty(cmake));
}

TEST(NeededSet, ContainsComparesExactText) {
    NeededSet needed;
    needed.add(ndk, "27.0", "app");
    struct Case {
        RequirementKind kind;
        const char* version;
        bool expected;
    };
    constexpr Case cases[] = {
        {ndk, "27.0", true},   {ndk, "27", false},     {ndk, "27.0.0", false},
        {ndk, "027.0", false}, {ndk, "27.0 ", false},  {ndk, " 27.0", false},
        {ndk, "", false},      {cmake, "27.0", false},
    };
    for (const Case& each : cases)
        EXPECT_EQ(needed.contains(each.kind, each.version), each.expected)
            << title(each.kind) << " '" << each.version << "'";
}

TEST(NeededSet, AddDropsWhiteSpaceAroundAVersionAndEmptyOnes) {
    NeededSet needed;
    needed.add(ndk, " 27.0\t\r\n", "app");
    needed.add(ndk, "27 0", "shop");
    EXPECT_EQ(needed.versions(ndk), (Texts{"27 0", "27.0"}));
    EXPECT_TRUE(needed.contains(ndk, "27.0"));

    NeededSet nothing;
    nothing.add(ndk, "", "app");
    nothing.add(ndk, " \n", "app");
    EXPECT_TRUE(nothing.isEmpty(ndk));
    EXPECT_EQ(nothing, NeededSet());
}

TEST(NeededSet, VersionsStandInNumericOrder) {
    NeededSet needed;
    for (const char* version : {"10.0", "9.0", "9.10.0", "21.4.7075529", "9.5.0"})
        needed.add(cmake, version, "app");
    EXPECT_EQ(needed.versions(cmake), (Texts{"9.0", "9.5.0", "9.10.0", "10.0", "21.4.7075529"}));
}

TEST(NeededSet, SummarizeNamesUpToThree) {
    struct Case {
        Texts texts;
        const char* expected;
    };
    const Case cases[] = {
        {{}, ""},
        {{"A"}, "A"},
        {{"A", "B"}, "A and B"},
        {{"A", "B", "C"}, "A, B, and C"},
        {{"A", "B", "C", "D"}, "A, B and 2 more"},
        {{"A", "B", "C", "D", "E"}, "A, B and 3 more"},
        {{"B", "A"}, "B and A"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(NeededSet::summarize(each.texts), each.expected);
}

TEST(NeededSet, VersionsOfOneOwnerAndOwnersOfOneNameCountOnce) {
    NeededSet needed;
    needed.add(cmake, "3.22.1", "app");
    needed.add(cmake, "3.6.0", "app");
    needed.add(cmake, " 3.6.0", "app");
    EXPECT_EQ(needed.versions(cmake), (Texts{"3.6.0", "3.22.1"}));
    EXPECT_EQ(needed.owners(cmake, "3.6.0"), Texts{"app"});
}

TEST(NeededSet, OwnersStandInPlainOrder) {
    NeededSet needed;
    for (const char* owner : {"b", "a10", "B", "a9", "é"})
        needed.add(ndk, "27.0", owner);
    EXPECT_EQ(needed.owners(ndk, "27.0"), (Texts{"B", "a10", "a9", "b", "é"}));
}

TEST(NeededSet, VersionsThatAreNoNumbersStandInAnOrderToo) {
    NeededSet needed;
    for (const char* version : {"v20.9.0", "lts/iron", "v20.10.0", "^18", "34.0.0", "34.0.0-rc3"})
        needed.add(RequirementKind::node, version, "app");
    EXPECT_EQ(needed.versions(RequirementKind::node),
              (Texts{"^18", "34.0.0", "34.0.0-rc3", "lts/iron", "v20.9.0", "v20.10.0"}));
}

// What a scan puts together

constexpr RequirementKind simulator = RequirementKind::simulator;
constexpr RequirementKind runtime = RequirementKind::iosRuntime;
constexpr RequirementKind image = RequirementKind::systemImage;

Project projectNeeding(const char* name, const std::vector<Project::Requirement>& requirements) {
    Project project;
    project.name = name;
    project.requirements = requirements;
    return project;
}

Simctl::Device device(const char* name, const char* runtimeIdentifier) {
    Simctl::Device device;
    device.name = name;
    device.runtimeIdentifier = runtimeIdentifier;
    return device;
}

AndroidEnvironment::AVD avd(const char* name, std::optional<std::string> systemImage) {
    AndroidEnvironment::AVD avd;
    avd.name = name;
    avd.systemImage = std::move(systemImage);
    return avd;
}

TEST(NeededSetOfAScan, NothingNeedsNothing) {
    EXPECT_EQ(DiskScanner::neededSet({}, {}, {}, {}), NeededSet());
    AndroidEnvironment android;
    android.avds = {avd("Pixel_8", std::nullopt), avd("Pixel_9", " ")};
    EXPECT_EQ(DiskScanner::neededSet({projectNeeding("app", {})}, android,
                                     {device("iPhone 15", "iOS-17"), device("", "iOS-18")}, {}),
              NeededSet());
}

TEST(NeededSetOfAScan, ProjectsNeedWhatTheyDeclare) {
    std::vector<Project::Requirement> all;
    for (const RequirementKind kind : allCases<RequirementKind>())
        all.push_back({kind, "1.0", "a file"});
    const NeededSet needed = DiskScanner::neededSet(
        {projectNeeding("shop", all), projectNeeding("app", {{ndk, " 27.0\n", "a file"}}),
         projectNeeding("app", {{ndk, "27.0", "a file"}, {cmake, " ", "a file"}})},
        {}, {}, {});
    for (const RequirementKind kind : allCases<RequirementKind>())
        EXPECT_EQ(needed.owners(kind, "1.0"), Texts{"shop"}) << title(kind);
    EXPECT_EQ(needed.owners(ndk, "27.0"), Texts{"app"}); // two projects of one name are one owner
    EXPECT_EQ(needed.versions(cmake), Texts{"1.0"});
}

TEST(NeededSetOfAScan, EmulatorsNeedTheirSystemImages) {
    AndroidEnvironment android;
    android.avds = {avd("Pixel_8", "android-34/google_apis"), avd("Old", "android-28/default"),
                    avd("Pixel_9", "android-34/google_apis"), avd("Broken", std::nullopt)};
    const NeededSet needed = DiskScanner::neededSet(
        {projectNeeding("shop", {{image, "android-28/default", "a file"}})}, android, {}, {});
    EXPECT_EQ(needed.versions(image), (Texts{"android-28/default", "android-34/google_apis"}));
    EXPECT_EQ(needed.owners(image, "android-34/google_apis"),
              (Texts{"emulator Pixel_8", "emulator Pixel_9"}));
    EXPECT_EQ(needed.ownerSummary(image, "android-28/default"), "emulator Old and shop");
    EXPECT_EQ(needed.storage.size(), 1U);
}

TEST(NeededSetOfAScan, SimulatorOfAScriptNeedsTheRuntimesOfAllDevicesOfThatName) {
    const std::vector<Simctl::Device> devices{
        device("iPhone 15", "iOS-17"),     device("iPhone 15", "iOS-18"),
        device("iPhone 15 Pro", "iOS-16"), device("iphone 15", "iOS-15"),
        device("iPad", "iOS-18"),
    };
    const NeededSet needed = DiskScanner::neededSet(
        {projectNeeding("shop",
                        {{simulator, "iPhone 15", "a file"}, {simulator, "iPad", "a file"}}),
         projectNeeding("app",
                        {{simulator, "iPhone 15", "a file"}, {simulator, "Gone", "a file"}})},
        {}, devices, {});
    EXPECT_EQ(needed.versions(runtime), (Texts{"iOS-17", "iOS-18"}));
    EXPECT_EQ(needed.owners(runtime, "iOS-17"), (Texts{"app (iPhone 15)", "shop (iPhone 15)"}));
    EXPECT_EQ(needed.owners(runtime, "iOS-18"),
              (Texts{"app (iPhone 15)", "shop (iPad)", "shop (iPhone 15)"}));
    EXPECT_EQ(needed.versions(simulator), (Texts{"Gone", "iPad", "iPhone 15"}));
    EXPECT_EQ(needed.owners(simulator, "Gone"), Texts{"app"});
}

TEST(NeededSetOfAScan, SimulatorWithoutADeviceStaysAndNeedsNoRuntime) {
    const NeededSet needed =
        DiskScanner::neededSet({projectNeeding("shop", {{simulator, "iPhone 9", "a file"}})}, {},
                               {device("iPhone 15", "iOS-17")}, {});
    EXPECT_TRUE(needed.isEmpty(runtime));
    EXPECT_EQ(needed.owners(simulator, "iPhone 9"), Texts{"shop"});
}

TEST(NeededSetOfAScan, BootedSimulatorsNeedTheirRuntimes) {
    InUseSnapshot inUse;
    inUse.bootedSimulators = {device("iPhone 16", "iOS-18"), device("iPhone 15", "iOS-17"),
                              device("Watch", "")};
    const NeededSet needed =
        DiskScanner::neededSet({projectNeeding("shop", {{simulator, "iPhone 15", "a file"}})}, {},
                               {device("iPhone 15", "iOS-17")}, inUse);
    EXPECT_EQ(needed.owners(runtime, "iOS-18"), Texts{"booted iPhone 16"});
    EXPECT_EQ(needed.owners(runtime, "iOS-17"), (Texts{"booted iPhone 15", "shop (iPhone 15)"}));
    EXPECT_EQ(needed.versions(runtime), (Texts{"iOS-17", "iOS-18"}));
    EXPECT_EQ(needed.versions(simulator), Texts{"iPhone 15"}); // a booted one is not named there
}

TEST(NeededSetOfAScan, RunningEmulatorsAloneNeedNothing) {
    InUseSnapshot inUse;
    inUse.runningAVDs = {"Pixel_8"};
    EXPECT_EQ(DiskScanner::neededSet({}, {}, {}, inUse), NeededSet());
}

} // namespace
} // namespace tidewright
