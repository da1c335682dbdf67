#include "core/support/CalendarDays.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace tidewright {
namespace {

using namespace std::chrono_literals;

Date at(const char* text) {
    const auto date = parseISO8601(text);
    EXPECT_TRUE(date.has_value()) << text;
    return date.value_or(Date());
}

struct Case {
    const char* name;
    const char* zone;
    const char* from;
    const char* to;
    int expected;
};

void check(const Case& each) {
    EXPECT_EQ(wholeDays(at(each.from), at(each.to), each.zone), each.expected) << each.name;
}

TEST(CalendarDays, ADayIsOverWhenTheSameTimeOfDayComesRound) {
    constexpr Case cases[] = {
        {"the same moment", "UTC", "2026-05-04T10:00:00Z", "2026-05-04T10:00:00Z", 0},
        {"a second short", "UTC", "2026-05-04T10:00:00Z", "2026-05-05T09:59:59Z", 0},
        {"to the second", "UTC", "2026-05-04T10:00:00Z", "2026-05-05T10:00:00Z", 1},
        {"over midnight", "UTC", "2026-05-04T23:59:59Z", "2026-05-05T00:00:00Z", 0},
        {"almost two", "UTC", "2026-05-04T10:00:00Z", "2026-05-06T09:59:59Z", 1},
        {"ninety", "UTC", "2026-01-01T00:00:00Z", "2026-04-01T00:00:00Z", 90},
        {"a year", "UTC", "2025-05-04T10:00:00Z", "2026-05-04T10:00:00Z", 365},
        {"half an hour off", "Asia/Kolkata", "2026-05-04T18:30:00Z", "2026-05-05T18:30:00Z", 1},
    };
    for (const Case& each : cases)
        check(each);
}

TEST(CalendarDays, MicrosecondsCount) {
    const Date from = at("2026-05-04T10:00:00Z") + 900us;
    EXPECT_EQ(wholeDays(from, from + 24h, "UTC"), 1);
    EXPECT_EQ(wholeDays(from, from + 24h - 1us, "UTC"), 0);
    EXPECT_EQ(wholeDays(from, from + 24h + 1us, "UTC"), 1);
}

TEST(CalendarDays, TheDayOfAClockChangeHas23Or25Hours) {
    constexpr auto berlin = "Europe/Berlin";
    constexpr auto newYork = "America/New_York";
    constexpr Case cases[] = {
        {"spring, 23 hours", berlin, "2026-03-28T12:00:00+01:00", "2026-03-29T12:00:00+02:00", 1},
        {"spring, a second less", berlin, "2026-03-28T12:00:00+01:00", "2026-03-29T11:59:59+02:00",
         0},
        {"from midnight to midnight", berlin, "2026-03-29T00:00:00+01:00",
         "2026-03-30T00:00:00+02:00", 1},
        {"autumn, 24 hours", berlin, "2026-10-24T12:00:00+02:00", "2026-10-25T11:00:00+01:00", 0},
        {"autumn, 25 hours", berlin, "2026-10-24T12:00:00+02:00", "2026-10-25T12:00:00+01:00", 1},
        {"a month with spring", berlin, "2026-03-01T12:00:00+01:00", "2026-04-01T12:00:00+02:00",
         31},
        {"a second less than it", berlin, "2026-03-01T12:00:00+01:00", "2026-04-01T11:59:59+02:00",
         30},
        {"a month with autumn", berlin, "2026-10-01T12:00:00+02:00", "2026-11-01T12:00:00+01:00",
         31},
        {"a time that the change skips", berlin, "2026-03-28T02:30:00+01:00",
         "2026-03-30T02:30:00+02:00", 2},
        {"spring, 23 hours", newYork, "2026-03-07T12:00:00-05:00", "2026-03-08T12:00:00-04:00", 1},
        {"spring, a second less", newYork, "2026-03-07T12:00:00-05:00", "2026-03-08T11:59:59-04:00",
         0},
        {"autumn, 24 hours", newYork, "2026-10-31T12:00:00-04:00", "2026-11-01T11:00:00-05:00", 0},
        {"autumn, 25 hours", newYork, "2026-10-31T12:00:00-04:00", "2026-11-01T12:00:00-05:00", 1},
        {"the same 23 hours elsewhere", "UTC", "2026-03-28T12:00:00+01:00",
         "2026-03-29T12:00:00+02:00", 0},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.zone);
        check(each);
    }
}

TEST(CalendarDays, TheFutureIsZeroOrNegative) {
    constexpr Case cases[] = {
        {"a second ahead", "UTC", "2026-05-04T10:00:00Z", "2026-05-04T09:59:59Z", 0},
        {"almost a day ahead", "UTC", "2026-05-04T10:00:00Z", "2026-05-03T10:00:01Z", 0},
        {"a day ahead", "UTC", "2026-05-04T10:00:00Z", "2026-05-03T10:00:00Z", -1},
        {"a year ahead", "UTC", "2027-05-04T10:00:00Z", "2026-05-04T10:00:00Z", -365},
        {"23 hours ahead in spring", "Europe/Berlin", "2026-03-29T12:00:00+02:00",
         "2026-03-28T12:00:00+01:00", -1},
    };
    for (const Case& each : cases)
        check(each);
}

TEST(CalendarDays, LeapYearsHaveOneDayMore) {
    constexpr Case cases[] = {
        {"to 29 February", "UTC", "2024-02-28T08:00:00Z", "2024-02-29T08:00:00Z", 1},
        {"from 29 February", "UTC", "2024-02-29T08:00:00Z", "2024-03-01T08:00:00Z", 1},
        {"over 29 February", "UTC", "2024-02-28T08:00:00Z", "2024-03-01T08:00:00Z", 2},
        {"an ordinary year", "UTC", "2023-02-28T08:00:00Z", "2023-03-01T08:00:00Z", 1},
        {"to the next 28 February", "UTC", "2024-02-29T08:00:00Z", "2025-02-28T08:00:00Z", 365},
        {"to the next 1 March", "UTC", "2024-02-29T08:00:00Z", "2025-03-01T08:00:00Z", 366},
        {"1900 was none", "UTC", "1900-02-28T08:00:00Z", "1900-03-01T08:00:00Z", 1},
        {"2000 was one", "UTC", "2000-02-28T08:00:00Z", "2000-03-01T08:00:00Z", 2},
    };
    for (const Case& each : cases)
        check(each);
}

TEST(CalendarDays, ExtremeDatesAreCountedToo) {
    const Date now = at("2026-05-04T10:00:00Z");
    const auto daysOf = [](Date from, Date to) {
        return std::chrono::duration<double>(to - from).count() / 86'400.0;
    };
    EXPECT_NEAR(wholeDays(Date::min() + 24h * 30'000, now, "UTC"),
                daysOf(Date::min() + 24h * 30'000, now), 1);
    EXPECT_NEAR(wholeDays(now, Date::max(), "UTC"), daysOf(now, Date::max()), 1);
    EXPECT_NEAR(wholeDays(Date::max(), now, "UTC"), -daysOf(now, Date::max()), 1);
    EXPECT_EQ(wholeDays(Date(), at("9999-12-31T00:00:00Z"), "UTC"), 2'932'896);
    EXPECT_EQ(wholeDays(at("0001-01-01T00:00:00Z"), Date(), "UTC"), 719'162);
    EXPECT_GT(wholeDays(Date::min(), Date::max(), "Europe/Berlin"), 200'000'000);
    EXPECT_LT(wholeDays(Date::max(), Date::min(), "Europe/Berlin"), -200'000'000);
}

/// The zone is looked up once for a process, so each child here is a new one.
TEST(CalendarDaysDeathTest, WithoutAZoneTheEnvironmentsCounts) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    struct ZoneCase {
        const char* zone;
        const char* days;
    };
    constexpr ZoneCase cases[] = {
        {"Europe/Berlin", "1 days"}, {"UTC", "0 days"}, {"America/New_York", "0 days"}};
    for (const ZoneCase& each : cases)
        EXPECT_EXIT(
            {
                setenv("TZ", each.zone, 1);
                // 23 hours, and a whole day in Berlin.
                const int days =
                    wholeDays(at("2026-03-28T12:00:00+01:00"), at("2026-03-29T12:00:00+02:00"));
                std::fprintf(stderr, "%d days\n", days);
                std::exit(0);
            },
            testing::ExitedWithCode(0), each.days);
}

TEST(CalendarDays, ADateFallsOnTheDayOfItsZone) {
    using namespace std::chrono;
    const std::vector<Date> dates{at("2026-03-28T23:30:00Z"), at("2026-03-29T00:30:00Z"),
                                  at("2026-03-29T22:30:00Z"), at("1969-12-31T23:59:59Z")};
    EXPECT_EQ(calendarDays(dates, "UTC"), (std::vector<sys_days>{2026y / 3 / 28, 2026y / 3 / 29,
                                                                 2026y / 3 / 29, 1969y / 12 / 31}));
    // Clocks go forward on the 29th.
    EXPECT_EQ(
        calendarDays(dates, "Europe/Berlin"),
        (std::vector<sys_days>{2026y / 3 / 29, 2026y / 3 / 29, 2026y / 3 / 30, 1970y / 1 / 1}));
    EXPECT_TRUE(calendarDays({}, "UTC").empty());
}

} // namespace
} // namespace tidewright
