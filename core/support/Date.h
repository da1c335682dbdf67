// Moments and spans of time, and their ISO 8601 text.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace tidewright {

/// A moment of the wall clock, in microseconds since 1970-01-01 UTC: every time that a file system
/// can hold fits.
using Date = std::chrono::sys_time<std::chrono::microseconds>;

/// A span of the monotonic clock.
using Duration = std::chrono::nanoseconds;

/// The wall clock now.
Date currentDate();

/// "2026-03-01T09:30:00Z": UTC, whole seconds, rounded down.
std::string iso8601Text(Date date);

/// Reads the internet form "2026-03-01T09:30:00" followed by "Z", "+01:00" or "+0100", without
/// fractional seconds; anything else is absent.
std::optional<Date> parseISO8601(std::string_view text);

} // namespace tidewright
