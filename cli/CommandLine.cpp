#include "cli/CommandLine.h"

#include "cli/CheckCommand.h"
#include "cli/ExitStatus.h"
#include "cli/ExplainCommand.h"
#include "cli/Grammar.h"
#include "cli/HistoryCommand.h"
#include "cli/ProjectsCommand.h"
#include "cli/RulesCommand.h"
#include "cli/ScanCommand.h"
#include "cli/StatusCommand.h"
#include "cli/Terminal.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <sstream>
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

/// The library takes a path of the form "[a,b]" for a list; "./[a,b]" is the same path.
std::vector<std::string> withoutLists(std::vector<std::string> arguments) {
    if (arguments.empty() || arguments.front() != "check")
        return arguments;
    for (std::string& argument : arguments)
        if (argument.starts_with('[') && argument.ends_with(']'))
            argument.insert(0, "./");
    return arguments;
}

int run(std::string_view command, Request request) {
    const bool json = request.json;
    request.clean.json = json;
    request.settings.json = json;
    if (command == "scan")
        return runScan(request.scan, json);
    if (command == "explain")
        return runExplain(request.scan, request.id, json);
    if (command == "clean")
        return runClean(request.scan, request.clean);
    if (command == "check")
        return runCheck(request.paths, request.isProjectItem, json);
    if (command == "projects")
        return runProjects(request.scan, json);
    if (command == "status")
        return runStatus(json);
    if (command == "history")
        return runHistory(json);
    return command == "settings" ? runSettings(request.settings) : runRules(json);
}

} // namespace

int runCommandLine(int argumentCount, const char* const* arguments) {
    if (!holdStandardStreams())
        return failedStatus;
    Grammar grammar;
    CLI::App& app = grammar.app();
    const std::vector<std::string> given(arguments + 1, arguments + argumentCount);
    try {
        std::vector<std::string> words = withoutLists(given);
        std::ranges::reverse(words); // as the library wants them
        app.parse(std::move(words));
    } catch (const CLI::Success& success) { // --help and --version
        std::ostringstream text;
        app.exit(success, text, text);
        return printResult(text.str());
    } catch (const CLI::ParseError& error) {
        return usageError(sentenceOf(app, error, given));
    }
    return run(app.get_subcommands().front()->get_name(), grammar.request());
}

} // namespace tidewright
