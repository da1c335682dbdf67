#include "core/support/CalendarDays.h"

#include <unicode/gregocal.h>
#include <unicode/timezone.h>

#include <memory>

namespace tidewright {

namespace {

UDate icuDate(Date date) { return static_cast<double>(date.time_since_epoch().count()) / 1000.0; }

icu::TimeZone* makeZone(const std::optional<std::string>& name) {
    if (!name)
        return icu::TimeZone::createDefault();
    return icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(*name));
}

} // namespace

int wholeDays(Date from, Date to, const std::optional<std::string>& timeZone) {
    UErrorCode status = U_ZERO_ERROR;
    icu::GregorianCalendar calendar(makeZone(timeZone), status);
    calendar.setTime(icuDate(from), status);
    const std::int32_t days = calendar.fieldDifference(icuDate(to), UCAL_DATE, status);
    return U_SUCCESS(status) ? days : 0;
}

} // namespace tidewright
