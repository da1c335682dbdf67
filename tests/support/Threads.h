// Counting the threads of this process.
#pragma once

#include <cstddef>

namespace tidewright::test {

/// How many are listed just now; one that was joined may be listed for a moment longer.
std::size_t threadCount();

/// How many there are while nothing is going on: to be compared with later. A sanitizer's own
/// thread, which comes with the first one of ours, is among them.
std::size_t threadsAtRest();

/// Whether no more than `count` are left soon.
bool threadsFallTo(std::size_t count);

} // namespace tidewright::test
