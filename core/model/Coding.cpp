#include "core/model/Coding.h"

#include "core/support/PercentEncoding.h"

#include <cmath>

namespace tidewright::coding {

namespace {

using namespace std::chrono;

constexpr std::string_view fileScheme = "file://";

// Cocoa's reference date.
constexpr Date start2001 = sys_days{2001y / January / 1};

// What RFC 3986 allows in a path besides the unreserved characters: sub-delims, ":", "@", and the
// separator.
constexpr std::string_view keptInPaths = "!$&'()*+,=:@/";

} // namespace

Json encodeLocation(const URL& url, CodingStyle style) {
    if (style.locations == CodingStyle::Locations::plainPath)
        return url.path();
    return std::string(fileScheme) + percentEncoded(url.path(), keptInPaths);
}

Json encodeDate(Date date, CodingStyle style) {
    if (style.dates == CodingStyle::Dates::iso8601)
        return iso8601Text(date);
    return duration<double>(date - start2001).count();
}

std::optional<URL> decodeLocation(const ParsedJson& json, CodingStyle style) {
    if (!json.is_string())
        return std::nullopt;
    const std::string_view text = json.get_ref<const std::string&>();
    const bool isFileURL = text.starts_with(fileScheme);
    if (style.locations == CodingStyle::Locations::fileURL && isFileURL)
        return URL(percentDecoded(text.substr(fileScheme.size())));
    return URL(std::string(text));
}

std::optional<Date> decodeDate(const ParsedJson& json, CodingStyle style) {
    if (style.dates == CodingStyle::Dates::iso8601)
        return json.is_string() ? parseISO8601(json.get_ref<const std::string&>()) : std::nullopt;
    if (!json.is_number())
        return std::nullopt;
    const double seconds = json.get<double>();
    constexpr double longest = 9e12; // seconds that fit into a Date
    if (!(std::abs(seconds) < longest))
        return std::nullopt;
    return start2001 + round<microseconds>(duration<double>(seconds));
}

std::optional<Int64> decodeInteger(const ParsedJson& json) {
    if (json.is_number_unsigned()) {
        const auto value = json.get<std::uint64_t>();
        return std::in_range<Int64>(value) ? std::optional(static_cast<Int64>(value))
                                           : std::nullopt;
    }
    if (json.is_number_integer())
        return json.get<Int64>();
    if (!json.is_number())
        return std::nullopt;
    const double value = json.get<double>();
    constexpr double limit = 9007199254740992; // 2^53: beyond it a double is no exact integer
    return value == std::floor(value) && std::abs(value) <= limit
               ? std::optional(static_cast<Int64>(value))
               : std::nullopt;
}

} // namespace tidewright::coding
