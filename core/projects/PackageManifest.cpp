#include "core/projects/PackageManifest.h"

#include "core/support/Json.h"

#include <algorithm>
#include <utility>

namespace tidewright {

namespace {

using Text = std::optional<std::string>;
using Members = std::map<std::string, Text>; ///< of an object; absent where a value is no text

constexpr std::size_t levelOfSections = 1; ///< how many objects and lists are open there
constexpr std::size_t levelOfMembers = 2;

bool isNeeded(const std::string& section, const std::string& member) {
    if (section == "dependencies" || section == "devDependencies")
        return member == "expo" || member == "react-native";
    return section == "scripts" || (section == "engines" && member == "node");
}

/// Picks what is needed while the text is parsed and keeps nothing else of it: manifests come from
/// anybody, and one made for it would fill the memory. A key that comes again replaces the first.
class ManifestReader final : public ParsedJson::json_sax_t {
public:
    PackageManifest manifest() const {
        PackageManifest result;
        result.usesExpo = dependency("expo") != nullptr;
        if (const Text* version = dependency("react-native"))
            result.reactNativeVersion = *version;
        result.packageManager = m_packageManager;
        const Members& scripts = section("scripts");
        if (std::ranges::all_of(scripts,
                                [](const auto& script) { return script.second.has_value(); }))
            for (const auto& [name, body] : scripts)
                result.scripts.emplace(name, *body);
        if (const auto node = section("engines").find("node"); node != section("engines").end())
            result.nodeEngine = node->second;
        return result;
    }

    bool null() override { return value(std::nullopt); }
    bool boolean(bool) override { return value(std::nullopt); }
    bool number_integer(number_integer_t) override { return value(std::nullopt); }
    bool number_unsigned(number_unsigned_t) override { return value(std::nullopt); }
    bool number_float(number_float_t, const string_t&) override { return value(std::nullopt); }
    bool string(string_t& text) override { return value(std::move(text)); }
    bool binary(binary_t&) override { return false; } // not in a text
    bool start_object(std::size_t) override { return open(true); }
    bool end_object() override { return close(); }
    bool start_array(std::size_t) override { return open(false); }
    bool end_array() override { return close(); }
    bool parse_error(std::size_t, const std::string&, const ParsedJson::exception&) override {
        return false;
    }

    bool key(string_t& name) override {
        if (m_level == levelOfSections) {
            m_sections.erase(name);
            m_section = std::move(name);
        } else if (m_level == levelOfMembers) {
            m_member = std::move(name);
        }
        return true;
    }

private:
    /// Of a value that is no text its beginning. False ends the parsing.
    bool value(Text text) {
        if (m_level == levelOfSections && m_section == "packageManager")
            m_packageManager = std::move(text);
        else if (m_level == levelOfMembers && m_hasMembers && isNeeded(m_section, m_member))
            m_sections[m_section].insert_or_assign(m_member, std::move(text));
        return m_level > 0; // the outermost value is an object
    }

    bool open(bool isObject) {
        const bool goesOn = m_level == 0 ? isObject : value(std::nullopt);
        if (m_level == levelOfSections)
            m_hasMembers = isObject;
        ++m_level;
        return goesOn;
    }

    bool close() {
        --m_level;
        return true;
    }

    const Members& section(const std::string& name) const {
        static const Members none;
        const auto found = m_sections.find(name);
        return found == m_sections.end() ? none : found->second;
    }

    /// Null for a package that neither list names. What the first says counts.
    const Text* dependency(const std::string& package) const {
        for (const char* list : {"dependencies", "devDependencies"})
            if (const auto found = section(list).find(package); found != section(list).end())
                return &found->second;
        return nullptr;
    }

    std::size_t m_level = 0;
    std::string m_section;     ///< the last key of the outermost object
    bool m_hasMembers = false; ///< whether the section's value is an object
    std::string m_member;      ///< the last key of that one
    Text m_packageManager;
    std::map<std::string, Members> m_sections;
};

} // namespace

std::optional<PackageManifest> PackageManifest::parse(std::string_view text) {
    // No JSON text has a NUL in it, and the parser would take it for the end.
    if (text.find('\0') != std::string_view::npos)
        return std::nullopt;
    ManifestReader reader;
    if (!ParsedJson::sax_parse(text, &reader))
        return std::nullopt;
    return reader.manifest();
}

} // namespace tidewright
