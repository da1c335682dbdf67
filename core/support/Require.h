// Stops the program when one of its own promises is broken.
//
// For mistakes of the programmer only: nothing that a file, a tool or a user can cause may end
// here. What can fail in ordinary life returns a Result.
#pragma once

#include <source_location>
#include <string_view>

namespace tidewright {

/// Prints `promise` with its place to standard error and aborts, unless `holds`.
void require(bool holds,
             std::string_view promise,
             std::source_location place = std::source_location::current());

} // namespace tidewright
