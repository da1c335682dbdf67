// Dates as the user reads them.
#pragma once

#include "core/support/Date.h"

#include <optional>
#include <string>
#include <vector>

namespace tidewright {

/// "5 Mar 2026, 14:30": day, abbreviated month, year, hour and minute in the user's language and of
/// `timeZone` (an Olson name; the user's own zone when absent). Empty where the calendar has no
/// answer. Any thread.
std::string dateAndTimeText(Date date, const std::optional<std::string>& timeZone = std::nullopt);

enum class DayForm {
    dayAndMonth,  ///< "5 Mar"
    monthAndYear, ///< "Mar 2026"
    year,         ///< "2026"
};

/// The texts of these days in the user's language; empty ones where the calendar has no answer. Any
/// thread.
std::vector<std::string> dayTexts(const std::vector<std::chrono::sys_days>& days, DayForm form);

} // namespace tidewright
