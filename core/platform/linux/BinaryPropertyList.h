// The binary form of property lists, of which only the outermost dictionary is read.
//
// The library that reads the XML form would read this one too, but it follows every reference by
// recursion and copies what several of them name: a list of 300 bytes can keep it busy for ever,
// one of 800 kB ends the program. Here nothing is followed that was not asked for.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tidewright {

bool isBinaryPropertyList(std::string_view bytes);

/// The ASCII text under a key of the outermost dictionary. Texts beyond ASCII, which this form
/// keeps in another encoding, are absent.
std::optional<std::string> binaryPropertyListString(std::string_view bytes, std::string_view key);

} // namespace tidewright
