// The time of day where the user is.
#pragma once

#include "core/support/Date.h"

#include <optional>
#include <string>

namespace tidewright {

/// "2026-03-01T10:30:00": the calendar and the clock of `timeZone` (an Olson name; the user's own
/// zone when absent), whole seconds, rounded down. Any thread.
std::string localTimeText(Date date, const std::optional<std::string>& timeZone = std::nullopt);

} // namespace tidewright
