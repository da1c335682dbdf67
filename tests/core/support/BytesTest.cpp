#include "core/support/Bytes.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace tidewright {
namespace {

struct Case {
    Int64 bytes;
    const char* expected;
};

TEST(Bytes, UnitsAreDecimal) {
    EXPECT_EQ(gigabyte, 1000000000);
    EXPECT_EQ(megabyte, 1000000);
}

TEST(Bytes, EachUnitHasItsDecimals) {
    constexpr Case cases[] = {
        {0, "Zero KB"},
        {1, "1 byte"},
        {2, "2 bytes"},
        {999, "999 bytes"},
        {1'000, "1 KB"},
        {1'024, "1 KB"},
        {12'345, "12 KB"},
        {999'499, "999 KB"},
        {1'000'000, "1 MB"},
        {1'048'576, "1 MB"},
        {1'490'000, "1.5 MB"},
        {1'500'000, "1.5 MB"},
        {12'340'000, "12.3 MB"},
        {999'900'000, "999.9 MB"},
        {1'000'000'000, "1 GB"},
        {2'340'000'000, "2.34 GB"},
        {25'000'000'000, "25 GB"},
        {494'384'795'648, "494.38 GB"},
        {999'990'000'000, "999.99 GB"},
        {1'000'000'000'000, "1 TB"},
        {1'234'000'000'000, "1.23 TB"},
        {1'000'000'000'000'000, "1 PB"},
        {1'239'000'000'000'000, "1.24 PB"},
        {1'000'000'000'000'000'000, "1 EB"},
        {9'000'000'000'000'000'000, "9 EB"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(formattedBytes(each.bytes), each.expected) << each.bytes;
}

TEST(Bytes, TrailingZerosAreDropped) {
    constexpr Case cases[] = {
        {2'000'000, "2 MB"},         {20'000'000, "20 MB"},         {100'000'000, "100 MB"},
        {2'040'000, "2 MB"},         {2'300'000'000, "2.3 GB"},     {2'304'000'000, "2.3 GB"},
        {2'030'000'000, "2.03 GB"},  {2'004'000'000, "2 GB"},       {10'000'000'000, "10 GB"},
        {100'000'000'000, "100 GB"}, {100'500'000'000, "100.5 GB"}, {10'000, "10 KB"},
        {100'000, "100 KB"},         {3'100'000'000'000, "3.1 TB"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(formattedBytes(each.bytes), each.expected) << each.bytes;
}

TEST(Bytes, RoundsToTheNearestShownStep) {
    constexpr Case cases[] = {
        {1'499, "1 KB"},
        {1'500, "2 KB"},
        {1'501, "2 KB"},
        {1'549'999, "1.5 MB"},
        {1'550'000, "1.6 MB"},
        {1'050'000, "1.1 MB"},
        {1'049'999, "1 MB"},
        {1'234'999'999, "1.23 GB"},
        {1'235'000'000, "1.24 GB"},
        {1'004'999'999, "1 GB"},
        {1'005'000'000, "1.01 GB"},
        {1'995'000'000, "2 GB"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(formattedBytes(each.bytes), each.expected) << each.bytes;
}

TEST(Bytes, ACountThatRoundsToAThousandGoesToTheNextUnit) {
    constexpr Case cases[] = {
        {999'499, "999 KB"},
        {999'500, "1 MB"},
        {999'999, "1 MB"},
        {999'949'999, "999.9 MB"},
        {999'950'000, "1 GB"},
        {999'999'999, "1 GB"},
        {999'994'999'999, "999.99 GB"},
        {999'995'000'000, "1 TB"},
        {999'994'999'999'999, "999.99 TB"},
        {999'995'000'000'000, "1 PB"},
        {999'994'999'999'999'999, "999.99 PB"},
        {999'995'000'000'000'000, "1 EB"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(formattedBytes(each.bytes), each.expected) << each.bytes;
}

TEST(Bytes, ANegativeCountHasTheTextOfItsMagnitude) {
    constexpr Case cases[] = {
        {-1, "-1 byte"},   {-2, "-2 bytes"},    {-999, "-999 bytes"},
        {-1'000, "-1 KB"}, {-999'500, "-1 MB"}, {-2'340'000'000, "-2.34 GB"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(formattedBytes(each.bytes), each.expected) << each.bytes;
}

TEST(Bytes, TheOutermostCountsHaveATextToo) {
    EXPECT_EQ(formattedBytes(std::numeric_limits<Int64>::max()), "9.22 EB");
    EXPECT_EQ(formattedBytes(std::numeric_limits<Int64>::min()), "-9.22 EB");
}

} // namespace
} // namespace tidewright
