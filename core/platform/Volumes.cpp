#include "core/platform/Volumes.h"

#include "core/platform/FileInfo.h"

namespace tidewright {

namespace {

// On macOS the system volume at "/" is sealed and small; the user's bytes are on this one.
const char* const dataVolume = "/System/Volumes/Data";

} // namespace

DiskSpace diskSpace(const VolumeCapacity& capacity) {
    return {.totalBytes = capacity.total.value_or(0),
            .availableBytes =
                capacity.availableForImportantUsage.value_or(capacity.available.value_or(0))};
}

Result<DiskSpace, SystemError> DiskSpace::current() {
    const URL dataRoot(dataVolume);
    return volumeCapacity(fileExists(dataRoot) ? dataRoot : URL("/")).map(diskSpace);
}

} // namespace tidewright
