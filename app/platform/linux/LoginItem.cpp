// By the freedesktop.org Desktop Application Autostart Specification 0.5 and Desktop Entry
// Specification 1.5.
#include "app/platform/LoginItem.h"

#include "core/platform/FileContents.h"
#include "core/platform/FileReplacement.h"
#include "core/platform/StandardFolders.h"
#include "core/platform/linux/KeyFile.h"
#include "core/support/Text.h"

#include <fmt/format.h>

#include <filesystem>

namespace tidewright::LoginItem {

namespace {

URL entryURL() {
    return userConfigDirectory(homeDirectory())
        .appending(fmt::format("autostart/{}.desktop", ownBundleIdentifier));
}

/// One word of a command line.
std::string quotedWord(std::string_view text) {
    constexpr std::string_view specialInQuotes = "\"`$\\";
    std::string word = "\"";
    for (const char c : text) {
        if (specialInQuotes.find(c) != std::string_view::npos)
            word += '\\';
        word += c;
        if (c == '%')
            word += '%'; // alone it would begin a field code
    }
    return word + '"';
}

/// A text as the value of a key, in which escapes come before the quoting of command lines.
std::string valueText(std::string_view text) {
    std::string value;
    for (const char c : text)
        switch (c) {
        case '\\':
            value += "\\\\";
            break;
        case '\n':
            value += "\\n";
            break;
        case '\r':
            value += "\\r";
            break;
        case '\t':
            value += "\\t";
            break;
        default:
            value += c;
        }
    return value;
}

std::string entryText(const URL& program) {
    return fmt::format("[Desktop Entry]\n"
                       "Type=Application\n"
                       "Name=Tidewright\n"
                       "Exec={}\n"
                       "Terminal=false\n"
                       "X-GNOME-Autostart-enabled=true\n",
                       valueText(quotedWord(program.path())));
}

/// A link at the place is replaced as a link.
Result<void, SystemError> writeEntry(const URL& entry, std::string_view text) {
    std::error_code error;
    if (std::filesystem::is_symlink(entry.path(), error))
        std::filesystem::remove(entry.path(), error);
    return replaceFile(entry, text);
}

Result<void, std::string> enable(const URL& entry, const URL& program) {
    if (!isUTF8(program.path())) // no desktop reads an entry that is not
        return Failure(fmt::format("Opening at login could not be turned on, since the name of a "
                                   "folder in {} is not valid text. Move Tidewright to another "
                                   "folder, then try again.",
                                   repairedUTF8(program.path())));
    const auto written = writeEntry(entry, entryText(program));
    if (written)
        return {};
    return Failure(fmt::format("Opening at login could not be turned on, since {} could not be "
                               "written ({}). See that you may write there and that the disk has "
                               "room, then try again.",
                               entry.path(), written.error().reason()));
}

Result<void, std::string> disable(const URL& entry) {
    std::error_code error;
    std::filesystem::remove(entry.path(), error);
    if (!error || error == std::errc::not_a_directory) // none is there, nor can one be
        return {};
    return Failure(fmt::format("Opening at login could not be turned off, since {} could not be "
                               "removed ({}). See that you may change its folder, then try again.",
                               entry.path(), error.message()));
}

} // namespace

bool isEnabled() {
    const auto text = readText(entryURL());
    if (!text)
        return false;
    const auto value = [&](std::string_view key) {
        return keyFileValue(*text, "Desktop Entry", key);
    };
    return value("Exec") && value("Hidden") != "true" &&
           value("X-GNOME-Autostart-enabled") != "false";
}

Result<void, std::string> setEnabled(bool enabled, const URL& program) {
    const URL entry = entryURL();
    return enabled ? enable(entry, program) : disable(entry);
}

} // namespace tidewright::LoginItem
