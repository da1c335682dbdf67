// The text files of groups and keys that desktop entries and Flatpak's facts are written in, by the
// "Basic format of the file" of the freedesktop.org Desktop Entry Specification 1.5. Read only.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tidewright {

/// The value of `key` in `group`, its escapes resolved; of several the first. A key for one
/// language
/// ("Name[de]") is a key of its own. Bytes that are not UTF-8 stay as they are.
std::optional<std::string> keyFileValue(std::string_view text,
                                        std::string_view group,
                                        std::string_view key);

} // namespace tidewright
