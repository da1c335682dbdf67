#include "core/support/Date.h"

#include <gtest/gtest.h>

#include <string>

namespace tidewright {
namespace {

using namespace std::chrono_literals;

Date at(std::chrono::microseconds sinceEpoch) { return Date(sinceEpoch); }

TEST(Date, Iso8601TextIsUTCInWholeSecondsRoundedDown) {
    struct Case {
        Date date;
        const char* expected;
    };
    const Case cases[] = {
        {at(0s), "1970-01-01T00:00:00Z"},
        {at(1s), "1970-01-01T00:00:01Z"},
        {at(999'999us), "1970-01-01T00:00:00Z"},
        {at(-1us), "1969-12-31T23:59:59Z"},
        {at(-1s), "1969-12-31T23:59:59Z"},
        {at(-1'000'001us), "1969-12-31T23:59:58Z"},
        {at(951'782'400s), "2000-02-29T00:00:00Z"},
        {at(978'307'200s), "2001-01-01T00:00:00Z"},
        {at(1'772'357'400s + 999ms), "2026-03-01T09:30:00Z"},
        {at(2'147'483'648s), "2038-01-19T03:14:08Z"},
        {at(253'402'300'799s), "9999-12-31T23:59:59Z"},
        {at(-62'135'596'800s), "0001-01-01T00:00:00Z"},
        {at(-62'167'219'200s), "0000-01-01T00:00:00Z"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(iso8601Text(each.date), each.expected);
}

TEST(Date, Iso8601TextOfATimeOutsideOfTheCalendarIsItsFirstOrLastSecond) {
    EXPECT_EQ(iso8601Text(Date::max()), "32767-12-31T23:59:59Z");
    EXPECT_EQ(iso8601Text(Date::min()), "-32767-01-01T00:00:00Z");
}

TEST(Date, ParseISO8601ReadsEveryAcceptedForm) {
    struct Case {
        const char* text;
        Date expected;
    };
    const Case cases[] = {
        {"1970-01-01T00:00:00Z", at(0s)},
        {"2026-03-01T09:30:00Z", at(1'772'357'400s)},
        {"2026-03-01T09:30:00+00:00", at(1'772'357'400s)},
        {"2026-03-01T09:30:00-00:00", at(1'772'357'400s)},
        {"2026-03-01T09:30:00+01:00", at(1'772'353'800s)},
        {"2026-03-01T09:30:00+0100", at(1'772'353'800s)},
        {"2026-03-01T09:30:00-01:30", at(1'772'362'800s)},
        {"2026-03-01T09:30:00-0130", at(1'772'362'800s)},
        {"2026-03-01T00:30:00+05:45", at(1'772'304'300s)},
        {"1969-12-31T23:59:59Z", at(-1s)},
        {"2024-02-29T12:00:00Z", at(1'709'208'000s)},
        {"2000-02-29T00:00:00Z", at(951'782'400s)},
        {"9999-12-31T23:59:59Z", at(253'402'300'799s)},
        {"0001-01-01T00:00:00Z", at(-62'135'596'800s)},
        {"2016-12-31T23:59:60Z", at(1'483'228'800s)}, // a leap second is the next day's first
    };
    for (const Case& each : cases) {
        const auto date = parseISO8601(each.text);
        ASSERT_TRUE(date.has_value()) << each.text;
        EXPECT_EQ(*date, each.expected) << each.text;
    }
}

TEST(Date, ParseISO8601RefusesAnythingElse) {
    const std::string_view cases[] = {
        "",
        "yesterday",
        "2026",
        "2026-03-01",
        "2026-03-01T09:30:00",
        "2026-03-01T09:30Z",
        "2026-03-01T09:30:00.000Z",
        "2026-03-01T09:30:00.5+01:00",
        "2026-03-01T09:30:00,5Z",
        "2026-03-01 09:30:00Z",
        "2026-03-01t09:30:00Z",
        "2026-03-01T09:30:00z",
        "2026-03-01T09:30:00 Z",
        "2026-03-01T09:30:00Z ",
        "2026-03-01T09:30:00Zulu",
        "2026-03-01T09:30:00Z\n",
        " 2026-03-01T09:30:00Z",
        "2026-03-01T09:30:00+01:00Z",
        "2026-03-01T09:30:00+01",
        "2026-03-01T09:30:00+1:00",
        "2026-03-01T09:30:00+01:0",
        "2026-03-01T09:30:00+01:",
        "2026-03-01T09:30:00+",
        "2026-03-01T09:30:00+24:00",
        "2026-03-01T09:30:00+01:60",
        "2026-13-01T09:30:00Z",
        "2026-00-01T09:30:00Z",
        "2026-02-29T09:30:00Z",
        "2026-02-30T09:30:00Z",
        "1900-02-29T09:30:00Z",
        "2026-04-31T09:30:00Z",
        "2026-03-32T09:30:00Z",
        "2026-03-00T09:30:00Z",
        "2026-03-01T24:00:00Z",
        "2026-03-01T23:60:00Z",
        "2026-03-01T23:59:61Z",
        "2026-3-1T09:30:00Z",
        "26-03-01T09:30:00Z",
        "02026-03-01T09:30:00Z",
        "+2026-03-01T09:30:00Z",
        "-2026-03-01T09:30:00Z",
        "20260301T093000Z",
        "2026-03-01T+9:30:00Z",
        "2026-03-01T 9:30:00Z",
        "2026-W09-7T09:30:00Z",
        "2026/03/01T09:30:00Z",
        "1772357400",
        "２026-03-01T09:30:00Z",
    };
    for (const std::string_view text : cases)
        EXPECT_FALSE(parseISO8601(text).has_value()) << '"' << text << '"';
    EXPECT_FALSE(parseISO8601(std::string_view("2026-03-01T09:30:00Z\0", 21)).has_value());
}

TEST(Date, EveryPrefixOfATextIsRefused) {
    const std::string text = "2026-03-01T09:30:00+01:00";
    ASSERT_TRUE(parseISO8601(text).has_value());
    for (std::size_t length = 0; length < text.size(); ++length)
        EXPECT_FALSE(parseISO8601(text.substr(0, length)).has_value()) << text.substr(0, length);
}

TEST(Date, WholeSecondsSurviveARoundTrip) {
    // A prime number of seconds apart, so that all times of day and days of the year come by.
    constexpr auto step = 86'028'121s;
    for (auto seconds = -62'135'596'800s; seconds <= 253'402'300'799s; seconds += step) {
        const std::string text = iso8601Text(at(seconds));
        ASSERT_EQ(parseISO8601(text), at(seconds)) << text;
    }
}

TEST(Date, CurrentDateIsTheWallClock) {
    const auto before = std::chrono::system_clock::now() - 1ms;
    const Date now = currentDate();
    EXPECT_GE(now, before);
    EXPECT_LE(now, std::chrono::system_clock::now());
}

} // namespace
} // namespace tidewright
