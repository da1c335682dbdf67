// `tidewright status`: free space, its health, and the Trash.
#pragma once

#include "cli/Terminal.h"
#include "core/model/DiskSpace.h"

namespace tidewright {

struct StatusRecord {
    std::optional<DiskSpace> disk; ///< absent where it can't be read
    DiskSpace::Health health = DiskSpace::Health::good;
    std::optional<Int64> trashBytes; ///< absent where it can't be read

    static constexpr auto fields() {
        return std::tuple{field("disk", &StatusRecord::disk),
                          field("health", &StatusRecord::health),
                          field("trashBytes", &StatusRecord::trashBytes)};
    }
};

std::string statusText(const StatusRecord& status, const Terminal& terminal);

/// Measures and prints; returns the exit status.
int runStatus(bool json);

} // namespace tidewright
