#include "core/support/RelativeDate.h"

#include "core/support/IcuTime.h"

#include <unicode/gregocal.h>
#include <unicode/reldatefmt.h>

#include <cmath>
#include <cstdlib>

namespace tidewright {

namespace {

constexpr double secondsOfMinute = 60;
constexpr double secondsOfHour = 3600;
constexpr int daysOfWeek = 7;
constexpr int monthsOfYear = 12;

/// A day of the calendar, and what it lies in; all but the day of the month are counted through.
struct CalendarDay {
    int day = 0;
    int week = 0; ///< it begins with the day that the user's country begins it with
    int month = 0;
    int year = 0;
    int dayOfMonth = 0;
};

CalendarDay dayOf(UDate date, icu::GregorianCalendar& calendar, UErrorCode& status) {
    calendar.setTime(date, status);
    CalendarDay day;
    day.day = calendar.get(UCAL_JULIAN_DAY, status);
    const int dayOfWeek = calendar.get(UCAL_DAY_OF_WEEK, status);
    const int weekStart = static_cast<int>(calendar.getFirstDayOfWeek(status));
    day.week = (day.day - (dayOfWeek - weekStart + daysOfWeek) % daysOfWeek) / daysOfWeek;
    day.year = calendar.get(UCAL_EXTENDED_YEAR, status);
    day.month = day.year * monthsOfYear + calendar.get(UCAL_MONTH, status);
    day.dayOfMonth = calendar.get(UCAL_DAY_OF_MONTH, status);
    return day;
}

/// Without regard to which of the two is earlier.
int wholeMonths(const CalendarDay& one, const CalendarDay& other) {
    const CalendarDay& earlier = one.day < other.day ? one : other;
    const CalendarDay& later = one.day < other.day ? other : one;
    return later.month - earlier.month - (later.dayOfMonth < earlier.dayOfMonth ? 1 : 0);
}

struct Distance {
    int count = 0; ///< below 0: ago
    URelativeDateTimeUnit unit = UDAT_REL_UNIT_SECOND;
    bool hasName = true; ///< whether a word of the language for it holds, such as "yesterday"
};

Distance clockDistance(double seconds) {
    if (std::abs(seconds) < secondsOfMinute)
        return {static_cast<int>(seconds), UDAT_REL_UNIT_SECOND};
    if (std::abs(seconds) < secondsOfHour)
        return {static_cast<int>(seconds / secondsOfMinute), UDAT_REL_UNIT_MINUTE};
    return {static_cast<int>(seconds / secondsOfHour), UDAT_REL_UNIT_HOUR};
}

Distance calendarDistance(const CalendarDay& from, const CalendarDay& to) {
    const int days = to.day - from.day;
    const int months = wholeMonths(from, to);
    const auto distance = [&](int count, URelativeDateTimeUnit unit, int named) {
        return Distance{days < 0 ? -count : count, unit, count == std::abs(named)};
    };
    if (months >= monthsOfYear)
        return distance(months / monthsOfYear, UDAT_REL_UNIT_YEAR, to.year - from.year);
    if (months >= 1)
        return distance(months, UDAT_REL_UNIT_MONTH, to.month - from.month);
    if (std::abs(days) >= daysOfWeek)
        return distance(std::abs(days) / daysOfWeek, UDAT_REL_UNIT_WEEK, to.week - from.week);
    return {days, UDAT_REL_UNIT_DAY};
}

} // namespace

std::string relativeDateText(Date date, Date now, const std::optional<std::string>& timeZone) {
    UErrorCode status = U_ZERO_ERROR;
    icu::GregorianCalendar calendar(icuTimeZone(timeZone).release(), status);
    const CalendarDay from = dayOf(icuDate(now), calendar, status);
    const CalendarDay to = dayOf(icuDate(date), calendar, status);
    const double seconds = (icuDate(date) - icuDate(now)) / 1000.0;
    const bool isByClock = from.day == to.day || std::abs(seconds) < secondsOfHour;
    const Distance distance = isByClock ? clockDistance(seconds) : calendarDistance(from, to);
    const icu::RelativeDateTimeFormatter formatter(status);
    icu::UnicodeString text;
    if (distance.hasName)
        formatter.format(distance.count, distance.unit, text, status);
    else
        formatter.formatNumeric(distance.count, distance.unit, text, status);
    std::string result;
    return U_SUCCESS(status) ? text.toUTF8String(result) : result;
}

} // namespace tidewright
