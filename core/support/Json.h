// JSON values, read and written. The one place that knows the JSON library.
#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace tidewright {

/// A JSON value to be written: its objects keep the order in which their keys were put in.
using Json = nlohmann::ordered_json;

/// A JSON value that was read: its objects are ordered by their keys' bytes, which keeps objects of
/// very many keys quick.
using ParsedJson = nlohmann::json;

/// Reads one document; absent when it is not JSON. Nesting of any depth is survived.
std::optional<ParsedJson> parseJson(std::string_view text);

/// The text under a key of a document whose outermost value is an object; absent for anything else.
/// Nothing but that text is kept, so a document made to fill the memory can't.
std::optional<std::string> jsonTextAt(std::string_view text, std::string_view key);

enum class JsonLayout { compact, indented };

/// The text of a document; bytes that are not UTF-8 become U+FFFD.
std::string jsonText(const Json& value, JsonLayout layout);

} // namespace tidewright
