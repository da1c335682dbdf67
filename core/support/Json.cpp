#include "core/support/Json.h"

namespace tidewright {

std::optional<Json> parseJson(std::string_view text) {
    Json value = Json::parse(text, nullptr, /*allow_exceptions=*/false);
    if (value.is_discarded())
        return std::nullopt;
    return value;
}

std::string jsonText(const Json& value, JsonLayout layout) {
    return value.dump(layout == JsonLayout::indented ? 2 : -1, ' ', /*ensure_ascii=*/false,
                      Json::error_handler_t::replace);
}

} // namespace tidewright
