#include "cli/ProjectsCommand.h"

#include "cli/ExitStatus.h"
#include "cli/Scanning.h"
#include "core/model/Coding.h"
#include "core/support/Text.h"

#include <fmt/format.h>

#include <algorithm>

namespace tidewright {

namespace {

std::string activityText(std::optional<int> days) {
    if (!days)
        return "no known activity";
    if (*days < 1)
        return "active today";
    return *days == 1 ? "active yesterday" : fmt::format("active {} days ago", *days);
}

/// "React Native 0.76.5", "Expo, React Native 0.76.5", "Flutter".
std::string kindText(const Project& project) {
    if (!project.reactNativeVersion)
        return std::string(rawValue(project.kind));
    const std::string reactNative = "React Native " + *project.reactNativeVersion;
    return project.kind == Project::Kind::expo ? "Expo, " + reactNative : reactNative;
}

std::string headline(const Project& project, Date now) {
    std::string line = fmt::format("{}, {}", project.name, kindText(project));
    if (project.packageManager)
        line += fmt::format(", {}", *project.packageManager);
    return fmt::format("{}, {}", line, activityText(project.daysSinceActivity(now)));
}

} // namespace

std::string projectsText(const std::vector<Project>& projects, Date now, const Terminal& terminal) {
    if (projects.empty())
        return "No projects were found.\n";
    const auto fitted = [&](std::string_view text) {
        const std::string line = printable(text);
        return elidedMiddle(line, terminal.columns.value_or(line.size()));
    };
    std::size_t needColumns = 0;
    for (const Project& project : projects)
        for (const Project::Requirement& each : project.requirements)
            needColumns = std::max(needColumns,
                                   displayWidth(title(each.kind)) + 1 + displayWidth(each.version));
    std::string text;
    for (const Project& project : projects) {
        text += terminal.inked(Ink::bold, fitted(headline(project, now))) + "\n";
        text += terminal.inked(Ink::dim, fitted("  " + project.url.path())) + "\n";
        for (const Project::Requirement& each : project.requirements) {
            const std::string need = fmt::format("{} {}", title(each.kind), each.version);
            text += fitted(fmt::format("    {:{}}  {}", need, needColumns, each.source)) + "\n";
        }
    }
    return text;
}

int runProjects(const ScanOptions& options, bool json) {
    const auto state = CommandState::make(options);
    if (!state)
        return usageError(state.error());
    const auto projects = findProjectsForCommand(**state);
    if (!projects)
        return projects.error();
    if (json)
        return printJson(encode(*projects, commandLineStyle));
    return printResult(projectsText(*projects, currentDate(), terminalOf(stdout)));
}

} // namespace tidewright
