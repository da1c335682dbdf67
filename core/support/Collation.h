// The order in which people expect names: locale-aware, digit runs by value.
#pragma once

#include <string>
#include <string_view>

namespace tidewright {

/// Below, equal to or above 0 as `a` sorts before, with or after `b`: by ICU collation in the
/// user's language, numbers by value, letters without regard to case first and with it where
/// nothing else differs. Texts that collate the same are equal here, also if their bytes differ.
/// Any thread.
int standardCompare(std::string_view a, std::string_view b);

/// Bytes whose order (as of unsigned numbers) is that of the texts, for sorting many of them. Any
/// thread.
std::string sortKey(std::string_view text);

} // namespace tidewright
