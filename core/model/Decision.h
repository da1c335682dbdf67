// How risky a finding is to clean, and what the program decided about it.
#pragma once

#include "core/support/Fields.h"

namespace tidewright {

/// Ordered: a greater value is a greater risk.
enum class Risk { safe = 0, low = 1, check = 2, leave = 3 };

template <>
struct EnumCases<Risk> {
    static constexpr std::array cases{
        std::pair{Risk::safe, std::string_view("safe")},
        std::pair{Risk::low, std::string_view("low")},
        std::pair{Risk::check, std::string_view("check")},
        std::pair{Risk::leave, std::string_view("leave")},
    };
};

/// The user's word for a risk.
std::string_view title(Risk risk);

enum class Decision {
    clean, ///< recommended
    ask,   ///< optional, the user's call
    keep,  ///< kept, with the reason
    info,  ///< shown for information only
};

template <>
struct EnumCases<Decision> {
    static constexpr std::array cases{
        std::pair{Decision::clean, std::string_view("clean")},
        std::pair{Decision::ask, std::string_view("ask")},
        std::pair{Decision::keep, std::string_view("keep")},
        std::pair{Decision::info, std::string_view("info")},
    };
};

/// Whether a user may pick an item of this decision for cleaning.
bool isSelectable(Decision decision);

} // namespace tidewright
