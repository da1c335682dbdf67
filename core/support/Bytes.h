// Byte counts and the one text that people see for them.
#pragma once

#include <cstdint>
#include <string>

namespace tidewright {

/// All byte counts are signed 64-bit integers.
using Int64 = std::int64_t;

/// Decimal units: the unit of every threshold that a user sees.
inline constexpr Int64 gigabyte = 1'000'000'000;
inline constexpr Int64 megabyte = 1'000'000;

/// The text of a byte count as the Finder of macOS shows file sizes: decimal units, "Zero KB",
/// "1 byte", bytes and KB without decimals, MB with at most one, GB and above with at most two,
/// no trailing zeros. A count that rounds up to 1000 of a unit is shown as 1 of the next.
std::string formattedBytes(Int64 bytes);

} // namespace tidewright
