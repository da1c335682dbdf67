#include "tests/support/Threads.h"

#include <filesystem>
#include <iterator>
#include <thread>

namespace tidewright::test {

std::size_t threadCount() {
    std::thread([] {}).join(); // with the first one a sanitizer starts a thread of its own
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return static_cast<std::size_t>(std::distance(begin(tasks), end(tasks)));
}

} // namespace tidewright::test
