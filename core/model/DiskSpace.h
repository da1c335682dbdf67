// The capacity of the data volume and its health.
#pragma once

#include "core/support/Bytes.h"
#include "core/support/Fields.h"
#include "core/support/Result.h"

namespace tidewright {

struct DiskSpace {
    enum class Health { good, low, critical };

    Int64 totalBytes = 0;
    Int64 availableBytes = 0;

    /// Asks the system (core/platform/Volumes.cpp): the only member that touches the disk.
    static Result<DiskSpace, SystemError> current();

    Int64 usedBytes() const;     ///< never below 0
    double usedFraction() const; ///< from 0 to 1; 0 for a disk without capacity

    /// Exactly as much space as a threshold is not below it.
    Health health(Int64 lowThreshold, Int64 criticalThreshold) const;

    bool operator==(const DiskSpace&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("totalBytes", &DiskSpace::totalBytes),
                          field("availableBytes", &DiskSpace::availableBytes)};
    }
};

template <>
struct EnumCases<DiskSpace::Health> {
    static constexpr std::array cases{
        std::pair{DiskSpace::Health::good, std::string_view("good")},
        std::pair{DiskSpace::Health::low, std::string_view("low")},
        std::pair{DiskSpace::Health::critical, std::string_view("critical")},
    };
};

/// The user's word for a health.
std::string_view title(DiskSpace::Health health);
std::string_view symbolName(DiskSpace::Health health);

} // namespace tidewright
