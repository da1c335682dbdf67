#include "core/support/DateText.h"

#include "core/support/IcuTime.h"

#include <unicode/smpdtfmt.h>

namespace tidewright {

std::string dateAndTimeText(Date date, const std::optional<std::string>& timeZone) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createInstanceForSkeleton("yMMMdjm", icu::Locale::getDefault(), status));
    if (U_FAILURE(status))
        return {};
    format->adoptTimeZone(icuTimeZone(timeZone).release());
    icu::UnicodeString text;
    format->format(icuDate(date), text);
    std::string bytes;
    return text.toUTF8String(bytes);
}

} // namespace tidewright
