#include "tests/support/Threads.h"

#include <chrono>
#include <filesystem>
#include <iterator>
#include <thread>

namespace tidewright::test {

namespace {

using namespace std::chrono_literals;

constexpr auto moment = 20ms;
constexpr int moments = 250;

} // namespace

std::size_t threadCount() {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return static_cast<std::size_t>(std::distance(begin(tasks), end(tasks)));
}

std::size_t threadsAtRest() {
    std::thread([] {}).join();
    std::size_t count = threadCount();
    for (int i = 0; i < moments; ++i) {
        std::this_thread::sleep_for(moment);
        const std::size_t later = threadCount();
        if (later >= count)
            break;
        count = later;
    }
    return count;
}

bool threadsFallTo(std::size_t count) {
    for (int i = 0; i < moments && threadCount() > count; ++i)
        std::this_thread::sleep_for(moment);
    return threadCount() <= count;
}

} // namespace tidewright::test
