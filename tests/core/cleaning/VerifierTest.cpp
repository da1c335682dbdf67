#include "core/cleaning/Verifier.h"

#include "tests/support/ForkedAnswer.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <thread>

namespace tidewright {

namespace {

using test::asOrdinaryUser;
using test::TempHome;
using Texts = std::vector<std::string>;

const std::string sdk = "Library/Android/sdk";

Texts texts(const std::vector<VerificationCheck>& checks) {
    Texts result;
    for (const VerificationCheck& check : checks)
        result.push_back(
            fmt::format("{} {}: {}", check.passed ? "+" : "-", check.name, check.detail));
    return result;
}

/// What each failed check says, in one text.
std::string failures(const std::vector<VerificationCheck>& checks) {
    std::string result;
    for (const VerificationCheck& check : checks)
        if (!check.passed)
            result += fmt::format("{}: {}", check.name, check.detail);
    return result;
}

void makeEmulator(const TempHome& home, const std::string& name, const std::string& config) {
    home.file(fmt::format(".android/avd/{}.avd/config.ini", name), config);
}

/// A home with an SDK that holds everything needed.
class VerifierTest : public testing::Test {
protected:
    VerifierTest() {
        needed.add(RequirementKind::ndk, "26.1.10909125", "shop");
        needed.add(RequirementKind::ndk, "9.0", "app");
        needed.add(RequirementKind::buildTools, "35.0.0", "app");
        needed.add(RequirementKind::buildTools, "35.0.0", "shop");
        needed.add(RequirementKind::buildTools, "35.0.0", "web");
        needed.add(RequirementKind::buildTools, "35.0.0", "x");
        needed.add(RequirementKind::cmake, "3.22.1", "app");
        needed.add(RequirementKind::cmake, "3.22.1", "shop");
        for (const char* file :
             {"ndk/26.1.10909125/source.properties", "ndk/9.0/source.properties",
              "build-tools/35.0.0/aapt2", "cmake/3.22.1/bin/cmake", "platform-tools/adb"})
            home.file(sdk + "/" + file);
        home.folder(sdk + "/system-images/android-34/google_apis");
        makeEmulator(home, "Pixel_8", imageLine);
    }

    std::vector<VerificationCheck> run(const Environment& environment = {}) const {
        return Verifier{home.url(), needed}.run(environment);
    }

    static constexpr const char* imageLine =
        "image.sysdir.1=system-images/android-34/google_apis/x86_64/\n";
    TempHome home;
    NeededSet needed;
};

TEST_F(VerifierTest, HealthySDKPassesAllChecksInOrder) {
    EXPECT_EQ(texts(run()), (Texts{
                                "+ NDK 9.0: Present (app)",
                                "+ NDK 26.1.10909125: Present (shop)",
                                "+ Build tools 35.0.0: Present (app, shop and 2 more)",
                                "+ CMake 3.22.1: Present (app and shop)",
                                "+ Emulator Pixel_8: Image android-34/google_apis present",
                                "+ adb: Present (Android tooling)",
                            }));
}

TEST_F(VerifierTest, NothingIsChanged) {
    // File systems note a read in the access time once after a change, and not within its tick.
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    home.snapshot();
    const std::string before = home.snapshot();
    run();
    EXPECT_EQ(home.snapshot(), before);
}

struct DamageCase {
    std::string name;
    std::string lost; ///< below the SDK
    std::string failure;
};

void PrintTo(const DamageCase& each, std::ostream* stream) { *stream << each.name; }

class VerifierDamage : public VerifierTest, public testing::WithParamInterface<DamageCase> {};

TEST_P(VerifierDamage, FailsThatCheckAlone) {
    const std::size_t all = run().size();
    std::filesystem::remove_all(home.path(sdk + "/" + GetParam().lost).path());
    const std::vector<VerificationCheck> checks = run();
    EXPECT_EQ(failures(checks), GetParam().failure);
    EXPECT_EQ(checks.size(), all);
}

const std::string noNDK = "NDK 26.1.10909125: Missing: needed by shop";
const std::string noTools = "Build tools 35.0.0: Missing: needed by app, shop and 2 more";
const std::string noCMake = "CMake 3.22.1: Missing: needed by app and shop";
const std::string noImage = "Emulator Pixel_8: Broken: image android-34/google_apis is missing";
const DamageCase damageCases[] = {
    {"NDK", "ndk/26.1.10909125", noNDK},
    {"SourceProperties", "ndk/26.1.10909125/source.properties", noNDK},
    {"OtherNDK", "ndk/9.0", "NDK 9.0: Missing: needed by app"},
    {"BuildTools", "build-tools", noTools},
    {"BuildToolsVersion", "build-tools/35.0.0", noTools},
    {"Aapt2", "build-tools/35.0.0/aapt2", noTools},
    {"CMake", "cmake", noCMake},
    {"CMakeBin", "cmake/3.22.1/bin", noCMake},
    {"CMakeProgram", "cmake/3.22.1/bin/cmake", noCMake},
    {"Images", "system-images", noImage},
    {"Image", "system-images/android-34/google_apis", noImage},
    {"Adb", "platform-tools/adb", "adb: Missing: needed by Android tooling"},
    {"NothingElse", "ndk/25.0", ""},
};

INSTANTIATE_TEST_SUITE_P(All, VerifierDamage, testing::ValuesIn(damageCases), [](const auto& each) {
    return each.param.name;
});

TEST_F(VerifierTest, EmptySDKFailsAllButTheDebugBridge) {
    std::filesystem::remove_all(home.path(sdk).path());
    home.folder(sdk);
    EXPECT_EQ(texts(run()),
              (Texts{
                  "- NDK 9.0: Missing: needed by app",
                  "- NDK 26.1.10909125: Missing: needed by shop",
                  "- Build tools 35.0.0: Missing: needed by app, shop and 2 more",
                  "- CMake 3.22.1: Missing: needed by app and shop",
                  "- Emulator Pixel_8: Broken: image android-34/google_apis is missing",
              }));
}

TEST_F(VerifierTest, WithoutAnSDKThereIsNothingToCheck) {
    std::filesystem::remove_all(home.path(sdk).path());
    EXPECT_EQ(texts(run()), Texts{});
}

TEST_F(VerifierTest, WithoutNeedsOnlyTheDebugBridgeIsChecked) {
    const TempHome bare;
    bare.file(sdk + "/platform-tools/adb");
    EXPECT_EQ(texts(Verifier{bare.url(), {}}.run(Environment())),
              Texts{"+ adb: Present (Android tooling)"});
}

TEST_F(VerifierTest, DebugBridgeIsNotMissedWithoutItsFolder) {
    std::filesystem::remove_all(home.path(sdk + "/platform-tools").path());
    const std::vector<VerificationCheck> checks = run();
    EXPECT_EQ(failures(checks), "");
    EXPECT_EQ(checks.size(), 5U);
}

TEST_F(VerifierTest, OtherNeedsAreNotLookedFor) {
    const std::size_t before = run().size();
    for (const RequirementKind kind : allCases<RequirementKind>())
        if (kind != RequirementKind::ndk && kind != RequirementKind::buildTools &&
            kind != RequirementKind::cmake)
            needed.add(kind, "1.0", "app");
    EXPECT_EQ(run().size(), before);
}

TEST_F(VerifierTest, EveryEmulatorWithAnImageHasACheckInOrderOfNames) {
    makeEmulator(home, "Another", imageLine);
    makeEmulator(home, "Broken", "image.sysdir.1=system-images/android-21/default/arm64-v8a/\n");
    makeEmulator(home, "Without", "hw.lcd.density=420\n");
    home.folder(".android/avd/Unreadable.avd");
    needed = {};
    EXPECT_EQ(texts(run()), (Texts{
                                "+ Emulator Another: Image android-34/google_apis present",
                                "- Emulator Broken: Broken: image android-21/default is missing",
                                "+ Emulator Pixel_8: Image android-34/google_apis present",
                                "+ adb: Present (Android tooling)",
                            }));
}

TEST_F(VerifierTest, OnlyExistenceCounts) {
    needed = {};
    needed.add(RequirementKind::ndk, "1", "app");
    needed.add(RequirementKind::ndk, "2", "app");
    needed.add(RequirementKind::ndk, "3", "app");
    home.folder(sdk + "/ndk/1/source.properties");
    home.link(sdk + "/ndk/2", "9.0");
    home.link(sdk + "/ndk/3/source.properties", "missing");
    EXPECT_EQ(failures(run()), "NDK 3: Missing: needed by app");
}

TEST_F(VerifierTest, VersionsStandInThePathAsTheyAre) {
    needed = {};
    needed.add(RequirementKind::ndk, "25.x/../9.0", "app");
    needed.add(RequirementKind::ndk, "r21e (old)", "app");
    home.folder(sdk + "/ndk/25.x");
    home.file(sdk + "/ndk/r21e (old)/source.properties");
    const std::vector<VerificationCheck> checks = run();
    EXPECT_EQ(checks.size(), 4U);
    EXPECT_EQ(failures(checks), "");
}

TEST_F(VerifierTest, WhatCantBeLookedAtIsMissing) {
    home.setMode("", 0755);
    home.setMode(sdk + "/ndk/26.1.10909125", 0);
    EXPECT_EQ(asOrdinaryUser([&] { return failures(run()); }), noNDK);
    home.setMode(sdk + "/platform-tools", 0);
    EXPECT_EQ(asOrdinaryUser([&] { return failures(run()); }),
              noNDK + "adb: Missing: needed by Android tooling");
}

TEST_F(VerifierTest, EnvironmentTellsWhereToLook) {
    home.file("other/platform-tools/readme");
    makeEmulator(home, "Hidden", imageLine);
    home.file("avds/Shown.avd/config.ini", imageLine);
    needed = {};
    EXPECT_EQ(texts(run({{"ANDROID_HOME", home.path("other").path()},
                         {"ANDROID_AVD_HOME", home.path("avds").path()}})),
              (Texts{
                  "- Emulator Shown: Broken: image android-34/google_apis is missing",
                  "- adb: Missing: needed by Android tooling",
              }));
}

TEST_F(VerifierTest, WithoutAWordItIsThisProcesssEnvironment) {
    home.file("other/platform-tools/readme");
    const auto answer =
        test::forkedAnswer([] { return true; },
                           [&] {
                               setenv("ANDROID_HOME", home.path("other").path().c_str(), 1);
                               setenv("ANDROID_AVD_HOME", home.path("none").path().c_str(), 1);
                               return failures(Verifier{home.url(), {}}.run());
                           });
    EXPECT_EQ(answer, "adb: Missing: needed by Android tooling");
}

} // namespace

} // namespace tidewright
