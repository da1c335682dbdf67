// Property lists, the format of an application bundle's Info.plist, in their XML and binary forms.
// The one place that knows the library for them. Only what stands in the outermost dictionary.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tidewright {

/// Larger property lists are not looked at.
inline constexpr std::size_t maximumPropertyListBytes = 1'000'000;

/// The text under a key of the outermost dictionary. Absent for another kind of value, and for
/// bytes that are no property list or one that no honest writer makes.
std::optional<std::string> propertyListString(std::string_view bytes, std::string_view key);

} // namespace tidewright
