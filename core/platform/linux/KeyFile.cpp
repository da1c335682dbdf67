#include "core/platform/linux/KeyFile.h"

#include "core/support/Text.h"

namespace tidewright {

namespace {

/// The escapes that a value of type string may have; what else follows a backslash stands as it is.
std::string unescaped(std::string_view value) {
    std::string result;
    for (std::size_t i = 0; i < value.size(); ++i) {
        constexpr std::string_view letters = "sntr\\";
        constexpr std::string_view meanings = " \n\t\r\\";
        const std::size_t letter =
            value[i] == '\\' && i + 1 < value.size() ? letters.find(value[i + 1]) : letters.npos;
        if (letter == letters.npos) {
            result += value[i];
        } else {
            result += meanings[letter];
            ++i;
        }
    }
    return result;
}

/// The group that a line opens; absent for any other line.
std::optional<std::string_view> groupOpenedBy(std::string_view line) {
    if (line.size() < 2 || line.front() != '[' || line.back() != ']')
        return std::nullopt;
    return line.substr(1, line.size() - 2);
}

} // namespace

std::optional<std::string> keyFileValue(std::string_view text,
                                        std::string_view group,
                                        std::string_view key) {
    bool isInGroup = false;
    for (const std::string& each : nonEmptyLines(text)) {
        const std::string line = trimmed(each);
        if (const auto opened = groupOpenedBy(line)) {
            isInGroup = *opened == group;
            continue;
        }
        const std::size_t equals = line.find('=');
        if (isInGroup && equals != line.npos && trimmed(line.substr(0, equals)) == key)
            return unescaped(trimmed(line.substr(equals + 1)));
    }
    return std::nullopt;
}

} // namespace tidewright
