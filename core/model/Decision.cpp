#include "core/model/Decision.h"

namespace tidewright {

std::string_view title(Risk risk) {
    constexpr std::array<std::string_view, 4> titles{"Safe", "Low risk", "Review", "Leave"};
    return titles.at(static_cast<std::size_t>(risk));
}

bool isSelectable(Decision decision) {
    return decision == Decision::clean || decision == Decision::ask;
}

} // namespace tidewright
