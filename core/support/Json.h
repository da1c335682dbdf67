// JSON values, read and written. The one place that knows the JSON library.
#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace tidewright {

/// A JSON value whose objects keep the order in which their keys were put in.
using Json = nlohmann::ordered_json;

/// Reads one document; absent when it is not JSON. Nesting of any depth is survived.
std::optional<Json> parseJson(std::string_view text);

enum class JsonLayout { compact, indented };

/// The text of a document; bytes that are not UTF-8 become U+FFFD.
std::string jsonText(const Json& value, JsonLayout layout);

} // namespace tidewright
