#include "core/support/Require.h"

#include <fmt/format.h>

#include <cstdlib>

namespace tidewright {

void require(bool holds, std::string_view promise, std::source_location place) {
    if (holds)
        return;
    fmt::print(stderr, "{}:{}: broken promise: {}\n", place.file_name(), place.line(), promise);
    std::abort();
}

} // namespace tidewright
