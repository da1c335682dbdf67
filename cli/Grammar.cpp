#include "cli/Grammar.h"

#include "core/support/Text.h"

#include <CLI/CLI.hpp>

namespace tidewright {

namespace {

constexpr std::size_t helpColumns = 80;
constexpr std::size_t helpTextStart = 28; // the column of the descriptions

/// The library's help in lines that fit a terminal.
class HelpFormatter : public CLI::Formatter {
public:
    HelpFormatter() {
        column_width(helpTextStart);
        label("SUBCOMMAND", "COMMAND");
        label("Positionals", "Arguments");
        // An argument's name says as much, and the line of the usage whether it may be left out.
        label("TEXT", "");
        label("REQUIRED", "");
    }

    std::string make_help(const CLI::App* app,
                          std::string name,
                          CLI::AppFormatMode mode) const override {
        std::string text;
        std::istringstream help(CLI::Formatter::make_help(app, std::move(name), mode));
        for (std::string line; std::getline(help, line);)
            text += fitted(line);
        return text;
    }

private:
    static std::string fitted(const std::string& line) {
        if (line.size() <= helpColumns)
            return line + "\n";
        const std::size_t start = line.starts_with(' ') ? helpTextStart : 0;
        std::string text = line.substr(0, start);
        for (const std::string& each : wrapped(line.substr(start), helpColumns - start)) {
            text += text.size() == start ? "" : std::string(start, ' ');
            text += each + "\n";
        }
        return text;
    }
};

void addFolders(CLI::App& command,
                const char* name,
                std::vector<std::string>& folders,
                const char* text) {
    command.add_option(name, folders, text)->option_text("DIR")->allow_extra_args(false);
}

void addScanOptions(CLI::App& command, ScanOptions& options) {
    addFolders(command, "--root", options.roots, "Look for projects in this folder (repeatable)");
    addFolders(command, "--exclude", options.exclusions, "Leave this location alone (repeatable)");
}

void addCleanOptions(CLI::App& command, CleanOptions& options) {
    command.add_flag("--recommended", options.recommended, "Clean everything that is recommended");
    command
        .add_option("--id", options.ids, "Clean this item; scan --json shows the ids (repeatable)")
        ->option_text("ID")
        ->allow_extra_args(false);
    command.add_flag("--dry-run", options.dryRun,
                     "Show and check what would be cleaned; touch nothing");
    command.add_flag("--yes", options.isConfirmed, "Don't ask: clean at once");
}

void addSettingsOptions(CLI::App& command, SettingsRequest& request) {
    command.add_option("KEY", request.key, "The setting; without one, all are shown");
    command.add_option("VALUE", request.value, "Its new value");
    addFolders(command, "--add", request.added, "Add this folder to a list (repeatable)");
    addFolders(command, "--remove", request.removed, "Take it out of the list (repeatable)");
}

void addCommands(CLI::App& app, Request& request) {
    const auto add = [&](const char* name, const char* text) -> CLI::App& {
        CLI::App* command = app.add_subcommand(name, text);
        command->group("Commands");
        command->add_flag("--json", request.json, "Print one JSON document");
        return *command;
    };
    addScanOptions(add("scan", "Scan the home folder and print what was found; changes nothing"),
                   request.scan);
    CLI::App& explain = add("explain", "Scan and tell everything about one item");
    addScanOptions(explain, request.scan);
    explain.add_option("ID", request.id, "The item's id, as scan --json shows it")->required();
    addScanOptions(add("projects", "List the projects found and what each needs"), request.scan);
    CLI::App& clean =
        add("clean", "Scan, show what can be cleaned, ask, and clean it; every path is checked "
                     "once more before it is touched");
    addScanOptions(clean, request.scan);
    addCleanOptions(clean, request.clean);
    CLI::App& check =
        add("check", "Say of each path whether it may be cleaned at all, and if not, why");
    check.add_option("PATH", request.paths, "What to judge; nothing is touched")->required();
    check.add_flag("--project-item", request.isProjectItem,
                   "Judge it as something inside a project that was picked on purpose");
    add("rules", "List what is looked for");
    add("status", "Show free space, its health, and the Trash");
    add("history", "List past cleanups");
    addSettingsOptions(add("settings", "Show or change the settings, which the window has too"),
                       request.settings);
}

OptionDescription describe(const CLI::Option& option) {
    OptionDescription result;
    for (const std::string& name : option.get_snames())
        result.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames())
        result.names.push_back("--" + name);
    result.value = option.get_positional() ? option.get_name(true) : option.get_option_text();
    result.text = option.get_description();
    result.isRequired = option.get_required();
    result.isRepeatable = option.get_items_expected_max() > 1;
    return result;
}

CommandDescription describe(const CLI::App& app) {
    CommandDescription result{app.get_name(), app.get_description(), {}, {}, {}};
    for (const CLI::Option* option : app.get_options())
        (option->get_positional() ? result.arguments : result.options).push_back(describe(*option));
    for (const CLI::App* command : app.get_subcommands({}))
        result.commands.push_back(describe(*command));
    return result;
}

} // namespace

Grammar::Grammar()
    : m_app(std::make_unique<CLI::App>(
          "Tidewright finds what developers can clean up without breaking their work.",
          "tidewright")) {
    m_app->formatter(std::make_shared<HelpFormatter>()); // the commands inherit it
    m_app->set_help_flag("-h,--help", "Print this help and end");
    m_app->set_version_flag("--version", "tidewright " TIDEWRIGHT_VERSION,
                            "Print the version and end");
    m_app->require_subcommand(1);
    addCommands(*m_app, m_request);
}

Grammar::~Grammar() = default;

CommandDescription Grammar::description() const { return describe(*m_app); }

} // namespace tidewright
