#include "core/model/AppUsage.h"

#include "core/support/CalendarDays.h"

namespace tidewright {

std::optional<int> AppUsage::idleDays(Date now) const {
    const std::optional<Date> since = lastUsed ? lastUsed : addedOn;
    return since ? std::optional(wholeDays(*since, now)) : std::nullopt;
}

} // namespace tidewright
