#include "tests/support/Threads.h"

#include <filesystem>
#include <iterator>

namespace tidewright::test {

std::size_t threadCount() {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return static_cast<std::size_t>(std::distance(begin(tasks), end(tasks)));
}

} // namespace tidewright::test
