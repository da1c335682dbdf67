#include "core/support/CalendarDays.h"

#include "core/support/IcuTime.h"

#include <unicode/gregocal.h>

namespace tidewright {

int wholeDays(Date from, Date to, const std::optional<std::string>& timeZone) {
    UErrorCode status = U_ZERO_ERROR;
    icu::GregorianCalendar calendar(icuTimeZone(timeZone).release(), status);
    calendar.setTime(icuDate(from), status);
    const std::int32_t days = calendar.fieldDifference(icuDate(to), UCAL_DATE, status);
    return U_SUCCESS(status) ? days : 0;
}

} // namespace tidewright
