#include "core/support/DurationText.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace tidewright {
namespace {

using namespace std::chrono_literals;

TEST(DurationText, HasTheUnitsOfWhichThereAreAny) {
    struct Case {
        Duration duration;
        const char* expected;
    };
    constexpr Case cases[] = {
        {0s, "0s"},          {-5s, "0s"},          {499ms, "0s"},
        {501ms, "1s"},       {9s, "9s"},           {9'400ms, "9s"},
        {59'400ms, "59s"},   {59'600ms, "1m"},     {65s, "1m 5s"},
        {3'599'700ms, "1h"}, {3'600s, "1h"},       {3'605s, "1h 5s"},
        {3'720s, "1h 2m"},   {3'725s, "1h 2m 5s"}, {100'000s, "27h 46m 40s"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(durationText(each.duration), each.expected) << each.duration.count();
}

TEST(DurationText, ExtremeDurationsHaveATextToo) {
    EXPECT_EQ(durationText(Duration::min()), "0s");
    EXPECT_FALSE(durationText(Duration::max()).empty());
}

/// The language is looked up once for a process, so the child is a new one.
TEST(DurationTextDeathTest, IsInTheUsersLanguage) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            setenv("LC_ALL", "fr_FR.UTF-8", 1);
            std::exit(durationText(65s).starts_with("1min") ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace tidewright
