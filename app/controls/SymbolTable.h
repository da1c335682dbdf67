// Which picture stands for which symbol. Symbols have the names of the macOS symbol set, by which
// core, state and screens call them on every system.
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace tidewright {

struct Symbol {
    std::string_view name;
    std::string_view file; ///< in symbols/, without its suffix
    /// The shape of the file, counted from 0, whose inside is tinted; what is drawn in it stays.
    /// For names that end in "fill", where one shape is the whole outline (that of a hand has
    /// several).
    std::optional<int> filledShape = std::nullopt;
};

/// All of them, ordered by name.
std::span<const Symbol> allSymbols();

/// Null if there is none of that name.
const Symbol* findSymbol(std::string_view name);

} // namespace tidewright
