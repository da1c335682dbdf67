#include "core/model/DiskSpace.h"

#include <gtest/gtest.h>

#include <limits>

namespace tidewright {
namespace {

TEST(DiskSpace, WhatIsUsedIsNeverBelowZero) {
    struct Case {
        const char* name;
        DiskSpace disk;
        Int64 usedBytes;
        double usedFraction;
    };
    constexpr Int64 most = std::numeric_limits<Int64>::max();
    constexpr Case cases[] = {
        {"nothing known", {0, 0}, 0, 0},
        {"empty", {100, 100}, 0, 0},
        {"full", {100, 0}, 100, 1},
        {"a quarter", {400, 300}, 100, 0.25},
        {"more available than there is", {100, 150}, 0, 0},
        {"no capacity but space", {0, 50}, 0, 0},
        {"a negative capacity", {-5, -10}, 5, 0},
        {"the greatest", {most, 0}, most, 1},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(each.disk.usedBytes(), each.usedBytes) << each.name;
        EXPECT_DOUBLE_EQ(each.disk.usedFraction(), each.usedFraction) << each.name;
    }
}

TEST(DiskSpace, EachHealthHasItsWordAndSymbol) {
    using Health = DiskSpace::Health;
    EXPECT_EQ(title(Health::good), "Healthy");
    EXPECT_EQ(title(Health::low), "Low space");
    EXPECT_EQ(title(Health::critical), "Almost full");
    EXPECT_EQ(symbolName(Health::good), "checkmark.seal.fill");
    EXPECT_EQ(symbolName(Health::low), "exclamationmark.triangle.fill");
    EXPECT_EQ(symbolName(Health::critical), "exclamationmark.triangle.fill");
}

TEST(DiskSpace, ExactlyAThresholdIsNotBelowIt) {
    using Health = DiskSpace::Health;
    struct Case {
        const char* name;
        Int64 available;
        Int64 low;
        Int64 critical;
        Health expected;
    };
    constexpr Case cases[] = {
        {"plenty", 100, 25, 10, Health::good},
        {"at the low threshold", 25, 25, 10, Health::good},
        {"a byte below it", 24, 25, 10, Health::low},
        {"at the critical threshold", 10, 25, 10, Health::low},
        {"a byte below it", 9, 25, 10, Health::critical},
        {"none", 0, 25, 10, Health::critical},
        {"at equal thresholds", 10, 10, 10, Health::good},
        {"a byte below equal thresholds", 9, 10, 10, Health::critical},
        {"thresholds the wrong way round", 15, 10, 20, Health::critical},
        {"no thresholds", 0, 0, 0, Health::good},
        {"any positive threshold", 0, 1, 1, Health::critical},
    };
    for (const Case& each : cases)
        EXPECT_EQ((DiskSpace{1'000, each.available}.health(each.low, each.critical)), each.expected)
            << each.name;
}

} // namespace
} // namespace tidewright
