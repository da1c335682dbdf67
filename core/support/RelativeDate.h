// When something was, or will be, as seen from now.
#pragma once

#include "core/support/Date.h"

#include <optional>
#include <string>

namespace tidewright {

/// "5 minutes ago", "yesterday", "last month", "in 2 days": in the user's language and in the
/// largest unit of which a whole one lies between, rounded down. Up to an hour, and on one day of
/// `timeZone` (an Olson name; the user's own zone when absent), that is a unit of the clock; else
/// days count from midnight to midnight, and weeks, months and years have a name only where the
/// calendar agrees: "1 month ago" is not in last month. Empty where the calendar has no answer. Any
/// thread.
std::string relativeDateText(Date date,
                             Date now,
                             const std::optional<std::string>& timeZone = std::nullopt);

} // namespace tidewright
