#include "core/support/PercentEncoding.h"

#include <fmt/format.h>

#include <charconv>

namespace tidewright {

namespace {

bool isUnreserved(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= '0' && byte <= '9') || std::string_view("-._~").find(byte) != std::string::npos;
}

/// Whether two hexadecimal digits begin at `digits`; then `byte` is set.
bool readByte(std::string_view digits, unsigned char& byte) {
    if (digits.size() < 2)
        return false;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + 2, byte, 16);
    return error == std::errc() && end == digits.data() + 2;
}

} // namespace

std::string percentEncoded(std::string_view bytes, std::string_view kept) {
    std::string result;
    for (const char byte : bytes) {
        if (isUnreserved(byte) || kept.find(byte) != std::string_view::npos)
            result += byte;
        else
            result += fmt::format("%{:02X}", static_cast<unsigned char>(byte));
    }
    return result;
}

std::string percentDecoded(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned char byte = 0;
        if (text[i] != '%' || !readByte(text.substr(i + 1), byte)) {
            result += text[i];
            continue;
        }
        result += static_cast<char>(byte);
        i += 2;
    }
    return result;
}

} // namespace tidewright
