#include "core/support/RelativeDate.h"

#include "tests/support/RuleTesting.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace tidewright {
namespace {

using namespace std::chrono_literals;

Date at(const char* text) { return parseISO8601(text).value(); }

const Date sundayNoon = at("2026-03-01T12:00:00Z");

TEST(RelativeDate, IsInTheLargestUnitOfWhichAWholeOneLiesBetween) {
    struct Case {
        const char* date;
        const char* expected;
    };
    constexpr Case cases[] = {
        {"2026-03-01T12:00:00Z", "now"},
        {"2026-03-01T11:59:59Z", "1 second ago"},
        {"2026-03-01T11:59:01Z", "59 seconds ago"},
        {"2026-03-01T11:59:00Z", "1 minute ago"},
        {"2026-03-01T11:54:01Z", "5 minutes ago"},
        {"2026-03-01T11:00:01Z", "59 minutes ago"},
        {"2026-03-01T11:00:00Z", "1 hour ago"},
        {"2026-03-01T00:00:00Z", "12 hours ago"},
        {"2026-02-28T23:59:59Z", "yesterday"},
        {"2026-02-28T00:00:00Z", "yesterday"},
        {"2026-02-27T23:59:59Z", "2 days ago"},
        {"2026-02-23T00:00:00Z", "6 days ago"},
        {"2026-02-22T23:59:59Z", "last week"},
        {"2026-02-20T12:00:00Z", "1 week ago"}, // not in the week that ended on Saturday
        {"2026-02-02T12:00:00Z", "3 weeks ago"},
        {"2026-02-01T12:00:00Z", "last month"},
        {"2026-01-31T12:00:00Z", "1 month ago"},
        {"2025-12-01T12:00:00Z", "3 months ago"},
        {"2025-03-02T12:00:00Z", "11 months ago"},
        {"2025-03-01T12:00:00Z", "last year"},
        {"2024-12-31T12:00:00Z", "1 year ago"},
        {"2024-03-01T12:00:00Z", "2 years ago"},
        {"1970-01-01T00:00:00Z", "56 years ago"},
        {"2026-03-01T12:00:01Z", "in 1 second"},
        {"2026-03-01T12:05:59Z", "in 5 minutes"},
        {"2026-03-01T23:59:59Z", "in 11 hours"},
        {"2026-03-02T00:00:00Z", "tomorrow"},
        {"2026-03-03T00:00:00Z", "in 2 days"},
        {"2026-03-08T00:00:00Z", "next week"},
        {"2026-04-01T12:00:00Z", "next month"},
        {"2027-03-01T12:00:00Z", "next year"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(relativeDateText(at(each.date), sundayNoon, "UTC"), each.expected) << each.date;
}

TEST(RelativeDate, UpToAnHourMidnightMakesNoDifference) {
    const Date now = at("2026-03-01T00:20:00Z");
    EXPECT_EQ(relativeDateText(at("2026-02-28T23:50:00Z"), now, "UTC"), "30 minutes ago");
    EXPECT_EQ(relativeDateText(at("2026-02-28T23:20:00Z"), now, "UTC"), "yesterday");
}

TEST(RelativeDate, DaysBeginAtMidnightOfTheZone) {
    const Date date = at("2026-02-28T23:30:00Z");
    EXPECT_EQ(relativeDateText(date, sundayNoon, "UTC"), "yesterday");
    EXPECT_EQ(relativeDateText(date, sundayNoon, "Europe/Berlin"), "12 hours ago");
    EXPECT_EQ(relativeDateText(date, sundayNoon, "Asia/Kathmandu"), "12 hours ago");
    EXPECT_EQ(relativeDateText(date, sundayNoon, "America/New_York"), "yesterday");
}

TEST(RelativeDate, WithoutAZoneItIsTheUsersOwn) {
    const test::InBerlin zone;
    EXPECT_EQ(relativeDateText(at("2026-02-28T23:30:00Z"), sundayNoon), "12 hours ago");
}

TEST(RelativeDate, ADayOfAClockChangeIsOneDay) {
    const Date now = at("2026-03-30T12:00:00+02:00");
    EXPECT_EQ(relativeDateText(at("2026-03-28T23:59:59+01:00"), now, "Europe/Berlin"),
              "2 days ago");
    EXPECT_EQ(relativeDateText(at("2026-03-29T00:00:00+01:00"), now, "Europe/Berlin"), "yesterday");
}

TEST(RelativeDate, ExtremeDatesHaveATextToo) {
    for (const Date date : {Date::min(), Date::max()}) {
        EXPECT_TRUE(relativeDateText(date, sundayNoon, "UTC").find("years") != std::string::npos);
        EXPECT_TRUE(relativeDateText(sundayNoon, date, "UTC").find("years") != std::string::npos);
    }
    EXPECT_EQ(relativeDateText(sundayNoon - 5min, sundayNoon, "No/Such_Zone"), "5 minutes ago");
}

/// The language is looked up once for a process, so each child here is a new one.
class RelativeDateDeathTest : public testing::Test {
protected:
    RelativeDateDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    [[noreturn]] static void exitWhetherGerman(const char* date, const char* expected) {
        setenv("LC_ALL", "de_DE.UTF-8", 1);
        std::exit(relativeDateText(at(date), sundayNoon, "UTC") == expected ? 0 : 1);
    }
};

TEST_F(RelativeDateDeathTest, IsInTheUsersLanguage) {
    EXPECT_EXIT(exitWhetherGerman("2026-02-28T12:00:00Z", "gestern"), testing::ExitedWithCode(0),
                "");
}

TEST_F(RelativeDateDeathTest, WeeksBeginWithTheUsersDay) {
    // On a Sunday, which ends the week there.
    EXPECT_EXIT(exitWhetherGerman("2026-02-20T12:00:00Z", "letzte Woche"),
                testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace tidewright
