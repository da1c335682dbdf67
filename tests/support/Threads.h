// Counting the threads of this process.
#pragma once

#include <cstddef>

namespace tidewright::test {

std::size_t threadCount();

} // namespace tidewright::test
