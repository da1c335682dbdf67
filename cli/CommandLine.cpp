#include "cli/CommandLine.h"

#include "cli/CheckCommand.h"
#include "cli/CleanCommand.h"
#include "cli/ExitStatus.h"
#include "cli/ExplainCommand.h"
#include "cli/ProjectsCommand.h"
#include "cli/RulesCommand.h"
#include "cli/ScanCommand.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <vector>

namespace tidewright {

namespace {

bool hasCommand(const CLI::App& app, const std::string& name) {
    return !app.get_subcommands([&](const CLI::App* command) { return command->check_name(name); })
                .empty();
}

/// What is wrong with the arguments, as one sentence that says where to look.
std::string sentenceOf(const CLI::App& app,
                       const CLI::ParseError& error,
                       const std::vector<std::string>& arguments) {
    const std::string what = error.what();
    std::string sentence = what;
    if (arguments.empty())
        sentence = "name a command, for instance: tidewright scan";
    else if (!arguments.front().starts_with('-') && !hasCommand(app, arguments.front()))
        sentence = fmt::format("there is no command \"{}\"", arguments.front());
    else if (arguments.front().starts_with('-'))
        sentence = fmt::format("there is no option \"{}\"", arguments.front());
    else if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr)
        sentence = fmt::format("{} needs to be told more: {}", arguments.front(), what);
    else if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr)
        sentence = what.substr(0, what.find(':')) + " needs a value behind it";
    else if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr)
        sentence = fmt::format("there is no option \"{}\"", what.substr(what.find(": ") + 2));
    return sentence + ". See tidewright --help.";
}

void addScanOptions(CLI::App& command, ScanOptions& options) {
    command.add_option("--root", options.roots, "Look for projects in this folder (repeatable)")
        ->option_text("DIR")
        ->allow_extra_args(false);
    command.add_option("--exclude", options.exclusions, "Leave this location alone (repeatable)")
        ->option_text("DIR")
        ->allow_extra_args(false);
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

/// The library takes a path of the form "[a,b]" for a list; "./[a,b]" is the same path.
std::vector<std::string> withoutLists(std::vector<std::string> arguments) {
    if (arguments.empty() || arguments.front() != "check")
        return arguments;
    for (std::string& argument : arguments)
        if (argument.starts_with('[') && argument.ends_with(']'))
            argument.insert(0, "./");
    return arguments;
}

} // namespace

int runCommandLine(int argumentCount, const char* const* arguments) {
    CLI::App app("Tidewright finds what developers can clean up without breaking their work.",
                 "tidewright");
    app.set_version_flag("--version", "tidewright " TIDEWRIGHT_VERSION);
    app.require_subcommand(1);

    // Only one command is run, so they share the values of their options.
    ScanOptions options;
    std::string id;
    bool json = false;
    const auto addCommand = [&](const char* name, const char* description) {
        CLI::App* command = app.add_subcommand(name, description);
        command->add_flag("--json", json, "Print one JSON document");
        return command;
    };
    CLI::App* scan =
        addCommand("scan", "Scan the home folder and print what was found; changes nothing");
    addScanOptions(*scan, options);
    CLI::App* explain = addCommand("explain", "Scan and tell everything about one item");
    addScanOptions(*explain, options);
    explain->add_option("ID", id, "The item's id, as scan --json shows it")->required();
    CLI::App* projects = addCommand("projects", "List the projects found and what each needs");
    addScanOptions(*projects, options);
    CLI::App* clean =
        addCommand("clean", "Scan, show what can be cleaned, ask, and clean it; every path is "
                            "checked once more before it is touched");
    addScanOptions(*clean, options);
    CleanOptions cleanOptions;
    addCleanOptions(*clean, cleanOptions);
    CLI::App* check = addCommand("check", "Say of each path whether it may be cleaned at all, and "
                                          "if not, why");
    std::vector<std::string> paths;
    bool isProjectItem = false;
    check->add_option("PATH", paths, "What to judge; nothing is touched")->required();
    check->add_flag("--project-item", isProjectItem,
                    "Judge it as something inside a project that was picked on purpose");
    addCommand("rules", "List what is looked for");

    const std::vector<std::string> given(arguments + 1, arguments + argumentCount);
    try {
        std::vector<std::string> words = withoutLists(given);
        std::ranges::reverse(words); // as the library wants them
        app.parse(std::move(words));
    } catch (const CLI::Success& success) { // --help and --version
        return app.exit(success);
    } catch (const CLI::ParseError& error) {
        return usageError(sentenceOf(app, error, given));
    }
    if (scan->parsed())
        return runScan(options, json);
    if (explain->parsed())
        return runExplain(options, id, json);
    if (clean->parsed()) {
        cleanOptions.json = json;
        return runClean(options, cleanOptions);
    }
    if (check->parsed())
        return runCheck(paths, isProjectItem, json);
    return projects->parsed() ? runProjects(options, json) : runRules(json);
}

} // namespace tidewright
