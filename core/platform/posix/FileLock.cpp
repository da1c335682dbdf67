#include "core/platform/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <thread>

namespace tidewright {

namespace {

constexpr std::chrono::milliseconds pause(5);

bool isTaken(int file, std::chrono::steady_clock::time_point end) {
    while (flock(file, LOCK_EX | LOCK_NB) != 0) {
        const bool isOthers = errno == EWOULDBLOCK || errno == EINTR;
        if (!isOthers || std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(pause);
    }
    return true;
}

} // namespace

FileLock::FileLock(const URL& file, Duration longestWait)
    : m_file(open(file.path().c_str(),
                  O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC,
                  S_IRUSR | S_IWUSR)) {
    if (m_file && !isTaken(m_file.get(), std::chrono::steady_clock::now() + longestWait))
        m_file.reset();
}

} // namespace tidewright
