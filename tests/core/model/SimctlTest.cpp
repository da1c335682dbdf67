#include "core/model/Simctl.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace tidewright {
namespace {

TEST(Simctl, ARuntimesPlatformHasAName) {
    struct Case {
        std::optional<std::string> platform;
        const char* expected;
    };
    const Case cases[] = {
        {"com.apple.platform.iphonesimulator", "iOS"},
        {"com.apple.platform.watchsimulator", "watchOS"},
        {"com.apple.platform.appletvsimulator", "tvOS"},
        {"com.apple.platform.xrsimulator", "visionOS"},
        {"com.apple.platform.iphoneos", "Simulator"},
        {"com.apple.platform.iPhoneSimulator", "Simulator"},
        {"com.apple.platform.iphonesimulator2", "Simulator"},
        {"", "Simulator"},
        {std::nullopt, "Simulator"},
    };
    for (const Case& each : cases) {
        Simctl::Runtime runtime;
        runtime.platformIdentifier = each.platform;
        EXPECT_EQ(runtime.platformName(), each.expected) << each.platform.value_or("absent");
    }
}

TEST(Simctl, OnlyTheExactStateIsBooted) {
    struct Case {
        const char* state;
        bool expected;
    };
    constexpr Case cases[] = {
        {"Booted", true},   {"booted", false},  {"BOOTED", false}, {"Shutdown", false},
        {"Booting", false}, {"Booted ", false}, {"", false},
    };
    for (const Case& each : cases) {
        Simctl::Device device;
        device.state = each.state;
        EXPECT_EQ(device.isBooted(), each.expected) << each.state;
    }
}

} // namespace
} // namespace tidewright
