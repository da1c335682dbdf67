#include "core/model/Project.h"

#include "core/support/CalendarDays.h"

namespace tidewright {

std::optional<int> Project::daysSinceActivity(Date now) const {
    return lastActivity ? std::optional(wholeDays(*lastActivity, now)) : std::nullopt;
}

} // namespace tidewright
