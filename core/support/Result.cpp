#include "core/support/Result.h"

#include <fmt/format.h>

#include <system_error>

namespace tidewright {

std::string SystemError::reason() const { return std::generic_category().message(code); }

std::string SystemError::sentence() const {
    if (path.empty())
        return fmt::format("Could not {}: {}.", operation, reason());
    return fmt::format("Could not {} {}: {}.", operation, path, reason());
}

} // namespace tidewright
