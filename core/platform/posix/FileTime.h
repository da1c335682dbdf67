// The times of files.
#pragma once

#include "core/support/Date.h"

#include <sys/stat.h>

#include <ctime>

namespace tidewright {

/// Some file systems hold times that no clock will ever show; those become the first or last Date.
inline Date dateOf(std::time_t seconds, long nanoseconds) {
    constexpr auto longest =
        std::chrono::floor<std::chrono::seconds>(Date::duration::max()) - std::chrono::seconds(1);
    if (seconds > longest.count())
        return Date::max();
    if (seconds < -longest.count())
        return Date::min();
    return Date(std::chrono::seconds(seconds) + std::chrono::microseconds(nanoseconds / 1000));
}

/// POSIX names the field st_mtim; macOS has had it under another name since before.
inline Date modificationDate(const struct stat& status) {
#ifdef __APPLE__
    return dateOf(status.st_mtimespec.tv_sec, status.st_mtimespec.tv_nsec);
#else
    return dateOf(status.st_mtim.tv_sec, status.st_mtim.tv_nsec);
#endif
}

} // namespace tidewright
