#include "cli/CheckCommand.h"

#include "cli/ExitStatus.h"
#include "cli/Layout.h"
#include "cli/Paths.h"
#include "cli/Scanning.h"
#include "core/model/Coding.h"

#include <fmt/format.h>

#include <algorithm>

namespace tidewright {

namespace {

PathVerdict verdictOn(const URL& url, const PathPolicy& policy, bool isProjectItem) {
    const auto approved = policy.validate(url, isProjectItem);
    if (approved)
        return {url.path(), true, std::nullopt, std::nullopt};
    return {url.path(), false, approved.error().kind, approved.error().errorDescription()};
}

} // namespace

std::string verdictsText(const std::vector<PathVerdict>& verdicts, const Terminal& terminal) {
    constexpr std::size_t textStart = 9; // behind "allowed  "
    std::string text;
    for (const PathVerdict& verdict : verdicts) {
        const std::string words =
            indentedParagraph(verdict.sentence.value_or(verdict.path), textStart, terminal);
        text += verdict.allowed ? terminal.inked(Ink::green, "allowed")
                                : terminal.inked(Ink::yellow, "refused");
        text += words.substr(std::string_view("allowed").size());
    }
    return text;
}

int runCheck(const std::vector<std::string>& paths, bool isProjectItem, bool json) {
    if (std::ranges::any_of(paths, &std::string::empty))
        return usageError("an empty path names nothing. See tidewright check --help.");
    const auto state = CommandState::make();
    if (!state)
        return usageError(state.error());
    const auto projects = findProjectsForCommand(**state);
    if (!projects)
        return projects.error();
    const PathPolicy policy = (*state)->model().policy(*projects);
    std::vector<PathVerdict> verdicts;
    for (const std::string& path : paths)
        verdicts.push_back(verdictOn(absolute(path), policy, isProjectItem));
    const int printed = json ? printJson(encode(verdicts, commandLineStyle))
                             : printResult(verdictsText(verdicts, terminalOf(stdout)));
    const bool allAllowed = std::ranges::all_of(verdicts, &PathVerdict::allowed);
    return printed == doneStatus && !allAllowed ? failedStatus : printed;
}

} // namespace tidewright
