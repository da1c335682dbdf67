#include "core/support/DurationText.h"

#include <unicode/locid.h>
#include <unicode/measfmt.h>
#include <unicode/measunit.h>
#include <unicode/measure.h>

#include <algorithm>
#include <vector>

namespace tidewright {

std::string durationText(Duration duration) {
    using std::chrono::seconds;
    const Duration greatest = Duration::max() - seconds(1); // there is room to round up
    const std::chrono::hh_mm_ss parts{
        std::chrono::round<seconds>(std::clamp(duration, Duration::zero(), greatest))};
    UErrorCode status = U_ZERO_ERROR;
    std::vector<icu::Measure> measures;
    // A Measure takes its unit over, also where it fails.
    const auto add = [&](std::int64_t count, icu::MeasureUnit* unit) {
        measures.emplace_back(icu::Formattable(count), unit, status);
    };
    if (parts.hours().count() > 0)
        add(parts.hours().count(), icu::MeasureUnit::createHour(status));
    if (parts.minutes().count() > 0)
        add(parts.minutes().count(), icu::MeasureUnit::createMinute(status));
    if (parts.seconds().count() > 0 || measures.empty())
        add(parts.seconds().count(), icu::MeasureUnit::createSecond(status));
    icu::MeasureFormat formatter(icu::Locale::getDefault(), UMEASFMT_WIDTH_NARROW, status);
    icu::FieldPosition nowhere(icu::FieldPosition::DONT_CARE);
    icu::UnicodeString text;
    formatter.formatMeasures(measures.data(), static_cast<std::int32_t>(measures.size()), text,
                             nowhere, status);
    std::string result;
    return U_SUCCESS(status) ? text.toUTF8String(result) : result;
}

} // namespace tidewright
