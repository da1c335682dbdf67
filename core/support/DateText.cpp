#include "core/support/DateText.h"

#include "core/support/IcuTime.h"

#include <unicode/smpdtfmt.h>

namespace tidewright {

namespace {

std::unique_ptr<icu::DateFormat> makeFormat(const char* skeleton,
                                            const std::optional<std::string>& timeZone) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createInstanceForSkeleton(skeleton, icu::Locale::getDefault(), status));
    if (U_FAILURE(status))
        return nullptr;
    format->adoptTimeZone(icuTimeZone(timeZone).release());
    return format;
}

std::string textOf(Date date, const icu::DateFormat& format) {
    icu::UnicodeString text;
    format.format(icuDate(date), text);
    std::string bytes;
    return text.toUTF8String(bytes);
}

const char* skeletonOf(DayForm form) {
    switch (form) {
    case DayForm::dayAndMonth:
        return "MMMd";
    case DayForm::monthAndYear:
        return "yMMM";
    case DayForm::year:
        return "y";
    }
    return "";
}

} // namespace

std::string dateAndTimeText(Date date, const std::optional<std::string>& timeZone) {
    const auto format = makeFormat("yMMMdjm", timeZone);
    return format ? textOf(date, *format) : std::string();
}

std::vector<std::string> dayTexts(const std::vector<std::chrono::sys_days>& days, DayForm form) {
    const auto format = makeFormat(skeletonOf(form), "UTC");
    std::vector<std::string> texts;
    for (const std::chrono::sys_days day : days)
        texts.push_back(format ? textOf(day, *format) : std::string());
    return texts;
}

} // namespace tidewright
