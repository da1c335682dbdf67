#include "cli/CommandLine.h"

#include "cli/ExitStatus.h"
#include "cli/RulesCommand.h"
#include "cli/ScanCommand.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

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
    else if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr)
        sentence = fmt::format("there is no option \"{}\"", arguments.front());
    else if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr)
        sentence = what.substr(0, what.find(':')) + " needs a value behind it";
    else if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr)
        sentence = fmt::format("there is no option \"{}\"", what.substr(what.find(": ") + 2));
    return sentence + ". See tidewright --help.";
}

} // namespace

int runCommandLine(int argumentCount, const char* const* arguments) {
    CLI::App app("Tidewright finds what developers can clean up without breaking their work.",
                 "tidewright");
    app.set_version_flag("--version", "tidewright " TIDEWRIGHT_VERSION);
    app.require_subcommand(1);

    ScanOptions scan;
    CLI::App* scanCommand = app.add_subcommand(
        "scan", "Scan the home folder and print what was found; changes nothing");
    scanCommand->add_option("--root", scan.roots, "Look for projects in this folder (repeatable)")
        ->option_text("DIR")
        ->allow_extra_args(false);
    scanCommand->add_option("--exclude", scan.exclusions, "Leave this location alone (repeatable)")
        ->option_text("DIR")
        ->allow_extra_args(false);
    scanCommand->add_flag("--json", scan.json, "Print the whole report as JSON");

    bool rulesAsJson = false;
    CLI::App* rulesCommand = app.add_subcommand("rules", "List what is looked for");
    rulesCommand->add_flag("--json", rulesAsJson, "Print the list as JSON");

    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::Success& success) { // --help and --version
        return app.exit(success);
    } catch (const CLI::ParseError& error) {
        return usageError(sentenceOf(app, error, {arguments + 1, arguments + argumentCount}));
    }
    return scanCommand->parsed() ? runScan(scan) : runRules(rulesAsJson);
}

} // namespace tidewright
