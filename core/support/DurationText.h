// How long something took.
#pragma once

#include "core/support/Date.h"

#include <string>

namespace tidewright {

/// "9s", "1m 5s", "1h 2m": hours, minutes and seconds in the narrow form of the user's language,
/// rounded to whole seconds, units of which there are none left out; "0s" for nothing, and for
/// less. Any thread.
std::string durationText(Duration duration);

} // namespace tidewright
