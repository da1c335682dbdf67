// The capacity of a volume. DiskSpace::current() is built here.
#pragma once

#include "core/model/DiskSpace.h"
#include "core/support/URL.h"

namespace tidewright {

/// What a system says of a volume, in bytes; a figure that it does not have is absent.
struct VolumeCapacity {
    std::optional<Int64> total;
    std::optional<Int64> availableForImportantUsage;
    std::optional<Int64> available;
};

/// Of the volume that holds the location; one request.
Result<VolumeCapacity, SystemError> volumeCapacity(const URL& url);

/// The figure for important usage counts where it is present, also when it is 0.
DiskSpace diskSpace(const VolumeCapacity& capacity);

} // namespace tidewright
