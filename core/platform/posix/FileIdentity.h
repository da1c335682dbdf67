// What tells a file, from what `stat` says of it.
#pragma once

#include "core/platform/FileInfo.h"

#include <sys/stat.h>

namespace tidewright {

inline FileIdentity identityOf(const struct stat& status) {
    return {static_cast<std::uint64_t>(status.st_dev), status.st_ino};
}

} // namespace tidewright
