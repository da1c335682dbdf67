#include "core/support/CalendarDays.h"

#include "core/support/IcuTime.h"

#include <unicode/gregocal.h>

namespace tidewright {

namespace {

constexpr int julianDayOf1970 = 2'440'588;

} // namespace

int wholeDays(Date from, Date to, const std::optional<std::string>& timeZone) {
    UErrorCode status = U_ZERO_ERROR;
    icu::GregorianCalendar calendar(icuTimeZone(timeZone).release(), status);
    calendar.setTime(icuDate(from), status);
    const std::int32_t days = calendar.fieldDifference(icuDate(to), UCAL_DATE, status);
    return U_SUCCESS(status) ? days : 0;
}

std::vector<std::chrono::sys_days> calendarDays(const std::vector<Date>& dates,
                                                const std::optional<std::string>& timeZone) {
    UErrorCode status = U_ZERO_ERROR;
    icu::GregorianCalendar calendar(icuTimeZone(timeZone).release(), status);
    std::vector<std::chrono::sys_days> days;
    days.reserve(dates.size());
    for (const Date date : dates) {
        calendar.setTime(icuDate(date), status);
        const int day = calendar.get(UCAL_JULIAN_DAY, status) - julianDayOf1970;
        days.emplace_back(std::chrono::days(day));
    }
    return days;
}

} // namespace tidewright
