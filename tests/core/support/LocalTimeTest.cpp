#include "core/support/LocalTime.h"

#include "tests/support/RuleTesting.h"

#include <gtest/gtest.h>

namespace tidewright {
namespace {

using namespace std::chrono_literals;

Date at(const char* text) { return parseISO8601(text).value(); }

TEST(LocalTime, IsTheClockOfTheZone) {
    struct Case {
        const char* date;
        const char* zone;
        const char* expected;
    };
    constexpr Case cases[] = {
        {"2026-03-01T09:30:00Z", "UTC", "2026-03-01T09:30:00"},
        {"2026-03-01T09:30:00Z", "Europe/Berlin", "2026-03-01T10:30:00"},
        {"2026-07-01T09:30:00Z", "Europe/Berlin", "2026-07-01T11:30:00"},
        {"2026-12-31T23:59:59Z", "Europe/Berlin", "2027-01-01T00:59:59"},
        {"2026-01-01T04:59:59Z", "America/New_York", "2025-12-31T23:59:59"},
        {"2026-07-01T00:00:00Z", "America/New_York", "2026-06-30T20:00:00"},
        {"2026-03-01T18:14:59Z", "Asia/Kathmandu", "2026-03-01T23:59:59"},
        {"2026-03-01T18:15:00Z", "Asia/Kathmandu", "2026-03-02T00:00:00"},
        {"2026-01-01T00:00:00Z", "Pacific/Kiritimati", "2026-01-01T14:00:00"},
        {"2024-02-29T12:00:00Z", "Pacific/Pago_Pago", "2024-02-29T01:00:00"},
        // Half an hour of summer time.
        {"2026-07-01T00:00:00Z", "Australia/Lord_Howe", "2026-07-01T10:30:00"},
        {"2026-01-01T00:00:00Z", "Australia/Lord_Howe", "2026-01-01T11:00:00"},
        {"2026-03-01T09:30:00Z", "No/Such_Zone", "2026-03-01T09:30:00"},
        {"2026-03-01T09:30:00Z", "", "2026-03-01T09:30:00"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(localTimeText(at(each.date), each.zone), each.expected) << each.zone;
}

TEST(LocalTime, JumpsWhereSummerTimeBeginsAndEnds) {
    const auto inBerlin = [](const char* text) { return localTimeText(at(text), "Europe/Berlin"); };
    EXPECT_EQ(inBerlin("2026-03-29T00:59:59Z"), "2026-03-29T01:59:59");
    EXPECT_EQ(inBerlin("2026-03-29T01:00:00Z"), "2026-03-29T03:00:00");
    EXPECT_EQ(inBerlin("2026-10-25T00:59:59Z"), "2026-10-25T02:59:59");
    EXPECT_EQ(inBerlin("2026-10-25T01:00:00Z"), "2026-10-25T02:00:00");
}

TEST(LocalTime, FollowsTheZonesPast) {
    EXPECT_EQ(localTimeText(at("1969-12-31T23:59:59Z"), "Europe/Berlin"), "1970-01-01T00:59:59");
    EXPECT_EQ(localTimeText(at("1970-01-01T00:00:00Z"), "America/New_York"), "1969-12-31T19:00:00");
    // There was a summer time then, and none some years later.
    EXPECT_EQ(localTimeText(at("1948-07-01T12:00:00Z"), "Europe/Berlin"), "1948-07-01T14:00:00");
    EXPECT_EQ(localTimeText(at("1950-07-01T12:00:00Z"), "Europe/Berlin"), "1950-07-01T13:00:00");
    // The sun's own time, to the second.
    EXPECT_EQ(localTimeText(at("1880-01-01T12:00:00Z"), "Europe/Berlin"), "1880-01-01T12:53:28");
}

TEST(LocalTime, SecondsAreRoundedDown) {
    EXPECT_EQ(localTimeText(at("2026-03-01T09:30:00Z") + 999'999us, "UTC"), "2026-03-01T09:30:00");
    EXPECT_EQ(localTimeText(Date(-1us), "UTC"), "1969-12-31T23:59:59");
    EXPECT_EQ(localTimeText(at("2026-03-29T01:00:00Z") - 1us, "Europe/Berlin"),
              "2026-03-29T01:59:59");
}

TEST(LocalTime, WithoutAZoneItIsTheUsersOwn) {
    const test::InBerlin zone;
    EXPECT_EQ(localTimeText(at("2026-03-01T09:30:00Z")), "2026-03-01T10:30:00");
}

TEST(LocalTime, ATimeOutsideOfTheCalendarIsItsFirstOrLastSecond) {
    for (const char* zone : {"UTC", "Europe/Berlin", "America/New_York"}) {
        EXPECT_EQ(localTimeText(Date::max(), zone), "32767-12-31T23:59:59") << zone;
        EXPECT_EQ(localTimeText(Date::min(), zone), "-32767-01-01T00:00:00") << zone;
    }
}

} // namespace
} // namespace tidewright
