#include "core/support/LocalTime.h"

#include "core/support/IcuTime.h"

#include <algorithm>

namespace tidewright {

std::string localTimeText(Date date, const std::optional<std::string>& timeZone) {
    // So far outside of the calendar that a day more or less makes no difference.
    constexpr std::chrono::days margin{2};
    const Date shown = std::clamp(date, Date::min() + margin, Date::max() - margin);
    std::int32_t offset = 0;       // in milliseconds, of the zone
    std::int32_t summerOffset = 0; // and on top of it at that time of the year
    UErrorCode status = U_ZERO_ERROR;
    icuTimeZone(timeZone)->getOffset(icuDate(shown), false, offset, summerOffset, status);
    // Without an answer it is UTC.
    const std::int32_t sum = U_SUCCESS(status) ? offset + summerOffset : 0;
    std::string text = iso8601Text(shown + std::chrono::milliseconds(sum));
    text.pop_back(); // the "Z" of UTC
    return text;
}

} // namespace tidewright
