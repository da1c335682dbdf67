#include "core/platform/Volumes.h"

#include <sys/statvfs.h>

#include <cerrno>

namespace tidewright {

namespace {

Int64 bytes(fsblkcnt_t blocks, unsigned long blockSize) {
    return static_cast<Int64>(blocks) * static_cast<Int64>(blockSize);
}

} // namespace

Result<VolumeCapacity, SystemError> volumeCapacity(const URL& url) {
    struct statvfs volume = {};
    if (statvfs(url.path().c_str(), &volume) != 0)
        return Failure(SystemError{errno, "read the capacity of", url.path()});
    return VolumeCapacity{.total = bytes(volume.f_blocks, volume.f_frsize),
                          .availableForImportantUsage = std::nullopt,
                          .available = bytes(volume.f_bavail, volume.f_frsize)};
}

} // namespace tidewright
