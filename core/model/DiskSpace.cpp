#include "core/model/DiskSpace.h"

#include <algorithm>

namespace tidewright {

Int64 DiskSpace::usedBytes() const { return std::max<Int64>(0, totalBytes - availableBytes); }

double DiskSpace::usedFraction() const {
    if (totalBytes < 1)
        return 0;
    return static_cast<double>(usedBytes()) / static_cast<double>(totalBytes);
}

DiskSpace::Health DiskSpace::health(Int64 lowThreshold, Int64 criticalThreshold) const {
    if (availableBytes < criticalThreshold)
        return Health::critical;
    return availableBytes < lowThreshold ? Health::low : Health::good;
}

std::string_view title(DiskSpace::Health health) {
    constexpr std::array<std::string_view, 3> titles{"Healthy", "Low space", "Almost full"};
    return titles.at(static_cast<std::size_t>(health));
}

std::string_view symbolName(DiskSpace::Health health) {
    return health == DiskSpace::Health::good ? "checkmark.seal.fill"
                                             : "exclamationmark.triangle.fill";
}

} // namespace tidewright
