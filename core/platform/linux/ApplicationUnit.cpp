#include "core/platform/linux/ApplicationUnit.h"

#include "core/platform/linux/KnownApplications.h"
#include "core/support/Pattern.h"
#include "core/support/Text.h"

#include <algorithm>
#include <charconv>

namespace tidewright {

namespace {

using Parts = std::vector<std::string>;

/// "\x2d" and the like, as systemd.unit(5) writes bytes that a unit's name can't have.
std::string unescaped(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned char byte = 0;
        const std::string_view digits = text.substr(std::min(i + 2, text.size()), 2);
        const bool isEscape =
            text.substr(i).starts_with("\\x") && digits.size() == 2 &&
            std::from_chars(digits.begin(), digits.end(), byte, 16).ptr == digits.end();
        result += isEscape ? static_cast<char>(byte) : text[i];
        i += isEscape ? 3 : 0;
    }
    return result;
}

std::string joined(Parts::const_iterator begin, Parts::const_iterator end) {
    std::string result;
    for (auto part = begin; part != end; ++part)
        result.append(part == begin ? "" : "-").append(*part);
    return result;
}

void insertIdentifier(std::set<std::string>& identifiers, const std::string& name) {
    if (!isApplicationIdentifier(name))
        return;
    identifiers.insert(name);
    // Some launchers put the file's name there; but "org.telegram.desktop" is an identifier.
    constexpr std::string_view suffix = ".desktop";
    if (name.ends_with(suffix))
        identifiers.insert(name.substr(0, name.size() - suffix.size()));
}

bool isRandomOfService(const std::string& part) {
    return part == "autostart" || part.find_first_not_of("0123456789") == part.npos;
}

std::set<std::string> applicationsOfSnap(std::string_view unit) {
    static const Pattern form(R"(^snap\.([^.]+)\.([^.]+?)[-.][0-9a-f]{8}(?:-[0-9a-f]{4}){3})"
                              R"(-[0-9a-f]{12}\.scope$)");
    std::set<std::string> identifiers;
    // Snaps install their desktop entries under this name.
    if (const auto match = form.firstMatch(unit))
        insertIdentifier(identifiers, unescaped((*match)[1]) + '_' + unescaped((*match)[2]));
    return identifiers;
}

} // namespace

std::set<std::string> applicationsOfUnit(std::string_view unit) {
    if (unit.starts_with("snap."))
        return applicationsOfSnap(unit);
    const bool isFromBus = unit.starts_with("dbus-:");
    const std::size_t dot = unit.rfind('.');
    if (dot == unit.npos || (!isFromBus && !unit.starts_with("app-")))
        return {};
    const std::string_view type = unit.substr(dot);
    if (type != ".scope" && type != ".service" && type != ".slice")
        return {};
    const std::string_view name = unit.substr(0, std::min(dot, unit.find('@')));
    Parts parts = splitDroppingEmpty(name, '-');
    parts.erase(parts.begin(), parts.begin() + (isFromBus ? 2 : 1)); // what the unit begins with
    const bool hasRandom = parts.size() > 1 && unit.find('@') == unit.npos &&
                           (type == ".scope" || isRandomOfService(parts.back()));
    if (hasRandom)
        parts.pop_back();
    for (std::string& part : parts)
        part = unescaped(part);
    std::set<std::string> identifiers;
    insertIdentifier(identifiers, joined(parts.begin(), parts.end()));
    if (parts.size() > 1) // the first may be the launcher
        insertIdentifier(identifiers, joined(parts.begin() + 1, parts.end()));
    return identifiers;
}

std::set<std::string> applicationsOfControlGroups(std::string_view text) {
    std::set<std::string> identifiers;
    for (const std::string& line : nonEmptyLines(text)) // number:controllers:path
        for (const std::string& unit : splitDroppingEmpty(line, '/'))
            identifiers.merge(applicationsOfUnit(unit));
    return identifiers;
}

} // namespace tidewright
