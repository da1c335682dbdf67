// Days of the calendar, as a person counts them.
#pragma once

#include "core/support/Date.h"

#include <optional>
#include <string>
#include <vector>

namespace tidewright {

/// The number of whole days from `from` to `to` in the calendar of `timeZone` (an Olson name; the
/// user's own zone when absent): a day is over when the same time of day comes round, so the day of
/// a clock change has 23 or 25 hours. Negative when `to` is more than a day earlier, and 0 where
/// the calendar has no answer. Any thread.
int wholeDays(Date from, Date to, const std::optional<std::string>& timeZone = std::nullopt);

/// The days on which these dates fall in `timeZone` (an Olson name; the user's own zone when
/// absent). Any thread.
std::vector<std::chrono::sys_days> calendarDays(
    const std::vector<Date>& dates, const std::optional<std::string>& timeZone = std::nullopt);

} // namespace tidewright
