#include "core/support/DateText.h"

#include <unicode/smpdtfmt.h>

#include <memory>

namespace tidewright {

std::string dateAndTimeText(Date date, const std::optional<std::string>& timeZone) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createInstanceForSkeleton("yMMMdjm", icu::Locale::getDefault(), status));
    if (U_FAILURE(status))
        return {};
    format->adoptTimeZone(
        timeZone ? icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(*timeZone))
                 : icu::TimeZone::createDefault());
    const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(date);
    icu::UnicodeString text;
    format->format(static_cast<double>(milliseconds.time_since_epoch().count()), text);
    std::string bytes;
    return text.toUTF8String(bytes);
}

} // namespace tidewright
