// Dates and time zones as ICU wants them; for the sources of this folder.
#pragma once

#include "core/support/Date.h"

#include <unicode/timezone.h>

#include <memory>
#include <optional>
#include <string>

namespace tidewright {

/// Milliseconds since 1970, with fractions.
inline UDate icuDate(Date date) {
    return static_cast<double>(date.time_since_epoch().count()) / 1000.0;
}

/// By its name in the tz database; the user's where none is given. Never null: ICU has "unknown",
/// which is UTC, for a name that it doesn't know.
inline std::unique_ptr<icu::TimeZone> icuTimeZone(const std::optional<std::string>& name) {
    return std::unique_ptr<icu::TimeZone>(
        name ? icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(*name))
             : icu::TimeZone::createDefault());
}

} // namespace tidewright
