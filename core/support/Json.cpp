#include "core/support/Json.h"

#include <utility>

namespace tidewright {

namespace {

/// No JSON text has a NUL in it, and the parser would take one for the end.
bool hasNUL(std::string_view text) { return text.find('\0') != std::string_view::npos; }

/// Passes over a document and keeps one text of its outermost object; the last, if the key comes
/// again.
class TextPicker final : public ParsedJson::json_sax_t {
public:
    explicit TextPicker(std::string_view key) : m_key(key) {}

    std::optional<std::string> found;

    bool null() override { return value(std::nullopt); }
    bool boolean(bool) override { return value(std::nullopt); }
    bool number_integer(number_integer_t) override { return value(std::nullopt); }
    bool number_unsigned(number_unsigned_t) override { return value(std::nullopt); }
    bool number_float(number_float_t, const string_t&) override { return value(std::nullopt); }
    bool string(string_t& text) override { return value(std::move(text)); }
    bool binary(binary_t&) override { return false; } // not in a text
    bool start_object(std::size_t) override { return open(m_level == 0); }
    bool end_object() override { return close(); }
    bool start_array(std::size_t) override { return open(false); }
    bool end_array() override { return close(); }
    bool key(string_t& name) override {
        if (m_level == 1)
            m_isAtKey = name == m_key;
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const ParsedJson::exception&) override {
        return false;
    }

private:
    /// False, which ends the parsing, for an outermost value that is no object.
    bool value(std::optional<std::string> text) {
        if (m_level == 1 && m_isAtKey)
            found = std::move(text);
        return m_level > 0;
    }
    bool open(bool isOutermostObject) {
        const bool goesOn = isOutermostObject || value(std::nullopt);
        ++m_level;
        return goesOn;
    }
    bool close() {
        --m_level;
        return true;
    }

    std::string_view m_key;
    std::size_t m_level = 0;
    bool m_isAtKey = false;
};

} // namespace

std::optional<ParsedJson> parseJson(std::string_view text) {
    if (hasNUL(text))
        return std::nullopt;
    ParsedJson value = ParsedJson::parse(text, nullptr, /*allow_exceptions=*/false);
    if (value.is_discarded())
        return std::nullopt;
    return value;
}

std::optional<std::string> jsonTextAt(std::string_view text, std::string_view key) {
    TextPicker picker(key);
    if (hasNUL(text) || !ParsedJson::sax_parse(text, &picker))
        return std::nullopt;
    return picker.found;
}

std::string jsonText(const Json& value, JsonLayout layout) {
    return value.dump(layout == JsonLayout::indented ? 2 : -1, ' ', /*ensure_ascii=*/false,
                      Json::error_handler_t::replace);
}

} // namespace tidewright
