#include "cli/ManPage.h"

#include "core/support/Text.h"

#include <fmt/format.h>

namespace tidewright {

namespace {

// When the text below was last revised.
constexpr std::string_view revised = "2026-11-21";

/// Text in which nothing is taken for a request or an escape, and quotes and dashes stay what was
/// typed.
std::string escaped(std::string_view text) {
    std::string result;
    if (text.starts_with('.') || text.starts_with('\''))
        result += "\\&";
    for (const char c : text) {
        switch (c) {
        case '\\':
            result += "\\e";
            break;
        case '-':
            result += "\\-";
            break;
        case '\'':
            result += "\\(aq";
            break;
        case '"':
            result += "\\(dq";
            break;
        case '`':
            result += "\\(ga";
            break;
        case '^':
            result += "\\(ha";
            break;
        case '~':
            result += "\\(ti";
            break;
        default:
            result += c;
        }
    }
    return result;
}

std::string bold(std::string_view text) { return "\\fB" + escaped(text) + "\\fR"; }
std::string italic(std::string_view text) { return "\\fI" + escaped(text) + "\\fR"; }

/// Text to be filled, in lines of moderate length, as is the custom.
std::string filled(std::string_view text) {
    constexpr std::size_t columns = 72;
    std::string result;
    for (const std::string& line : wrapped(text, columns))
        result += escaped(line) + "\n";
    return result;
}

std::string paragraph(std::string_view text) { return ".PP\n" + filled(text); }

/// A paragraph under a tag, which is marked up already.
std::string tagged(std::string_view tag, std::string_view text) {
    return fmt::format(".TP\n{}\n{}", tag, filled(text));
}

std::string heading(std::string_view title) { return fmt::format(".SH {}\n", title); }

std::string optionTag(const OptionDescription& option) {
    std::string tag;
    for (const std::string& name : option.names)
        tag += (tag.empty() ? "" : ", ") + bold(name);
    return option.value.empty() ? tag : tag + " " + italic(option.value);
}

/// "[KEY]", "PATH ..."
std::string argumentTag(const OptionDescription& argument) {
    const std::string name = italic(argument.value) + (argument.isRepeatable ? " .\\|.\\|." : "");
    return argument.isRequired ? name : "[" + name + "]";
}

std::string synopsis(const CommandDescription& program, const CommandDescription& command) {
    std::string line =
        bold(program.name) + " " + bold(command.name) + " [" + italic("OPTION") + " .\\|.\\|.]";
    for (const OptionDescription& argument : command.arguments)
        line += " " + argumentTag(argument);
    return line;
}

std::string withFullStop(const std::string& text) { return text + "."; }

std::string optionsText(const std::vector<OptionDescription>& options) {
    std::string text;
    for (const OptionDescription& option : options)
        text += tagged(optionTag(option), withFullStop(option.text));
    return text;
}

std::string commandText(const CommandDescription& program, const CommandDescription& command) {
    std::string text = fmt::format(".SS {}\n{}\n", command.name, synopsis(program, command)) +
                       paragraph(withFullStop(command.text));
    for (const OptionDescription& argument : command.arguments)
        text += tagged(argumentTag(argument), withFullStop(argument.text));
    return text + optionsText(command.options);
}

std::string settingsText() {
    std::string text = heading("SETTINGS");
    text += filled("The window has them too. A truth value is yes or no, and a list of folders "
                   "is changed by --add and --remove.");
    for (const Setting& setting : allSettings())
        text += tagged(bold(setting.key), withFullStop(setting.meaning));
    return text;
}

std::string statusText() {
    return heading("EXIT STATUS") + tagged(bold("0"), "Done.") +
           tagged(bold("1"), "Done, but an item failed or was skipped, a check did not pass, or "
                             "check refused a path; or the result could not be written.") +
           tagged(bold("2"), "Wrong usage. An id that no item has, a root that is missing or is no "
                             "folder and an unknown setting are that too.") +
           tagged(bold("3"), "Refused for want of a confirmation: where nobody can be asked, clean "
                             "takes --yes.") +
           tagged(bold("130"), "Interrupted.");
}

std::string environmentText() {
    return heading("ENVIRONMENT") +
           tagged(bold("HOME"), "The home folder, which is what is scanned.") +
           tagged(bold("XDG_CONFIG_HOME") + ", " + bold("XDG_DATA_HOME") + ", " +
                      bold("XDG_STATE_HOME"),
                  "On Linux, where settings, history and audit logs are kept.") +
           tagged(bold("TMPDIR"), "The folder for temporary files.") +
           tagged(bold("NO_COLOR"), "When set and not empty, nothing is coloured.") +
           tagged(bold("TIDEWRIGHT_LOG"),
                  "On Linux, when set and not empty and where no journal takes the messages of the "
                  "log: all of them are written to standard error, not the important ones alone.");
}

std::string filesText() {
    std::string text = heading("FILES") + filled("On Linux:");
    text += tagged(italic("~/.config/Tidewright/Tidewright.conf"), "The settings.");
    text += tagged(italic("~/.local/share/Tidewright/history.json"), "The past cleanups.");
    text += tagged(italic("~/.local/state/Tidewright/Logs/clean-*.jsonl"),
                   "The audit logs: what each cleanup did, item by item.");
    text += paragraph("On macOS:");
    text += tagged(italic("~/Library/Preferences/com.tidewright.app.plist"), "The settings.");
    text += tagged(italic("~/Library/Application Support/Tidewright/history.json"),
                   "The past cleanups.");
    return text + tagged(italic("~/Library/Logs/Tidewright/clean-*.jsonl"), "The audit logs.");
}

std::string exampleText(std::string_view what, std::string_view line) {
    return tagged(escaped(line), what);
}

std::string examplesText() {
    return heading("EXAMPLES") +
           exampleText("What would be cleaned, without touching it.",
                       "tidewright clean --recommended --dry-run") +
           exampleText("Clean all that is recommended but for one folder, without being asked.",
                       "tidewright clean --recommended --yes --exclude ~/work") +
           exampleText("Leave a folder alone from now on, here and in the window.",
                       "tidewright settings exclusions --add ~/code/archive") +
           exampleText("The ids of all items.", "tidewright scan --json | jq -r '.items[].id'");
}

} // namespace

std::string manPage(const CommandDescription& program, std::string_view version) {
    std::string page = ".\\\" Made by the build from the grammar of the command line.\n";
    page += fmt::format(".TH TIDEWRIGHT 1 \"{}\" \"Tidewright {}\"\n", revised, escaped(version));
    page += heading("NAME") + "tidewright \\- give developers their disk space back\n";
    page += heading("SYNOPSIS") + bold(program.name) + " " + italic("COMMAND") + " [" +
            italic("OPTION") + " .\\|.\\|.] [" + italic("ARGUMENT") + " .\\|.\\|.]\n";
    page += heading("DESCRIPTION") + filled(program.text);
    page += paragraph(
        "It looks through the home folder for what development leaves behind, judges every finding "
        "and says why: what can be cleaned, what is your call, and what is kept because something "
        "still needs or uses it. A scan only reads. What is to be cleaned is shown and asked about "
        "before, checked once more path by path, and noted in an audit log.");
    page += paragraph(
        "Results go to standard output, messages, questions and progress to standard error. With "
        "--json, standard output holds one JSON document and nothing else. A relative path is "
        "taken from the current folder.");
    page += heading("OPTIONS") + optionsText(program.options);
    page += heading("COMMANDS");
    for (const CommandDescription& command : program.commands)
        page += commandText(program, command);
    return page + settingsText() + statusText() + environmentText() + filesText() + examplesText();
}

} // namespace tidewright
