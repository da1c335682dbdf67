// `tidewright projects`: the projects found and what each needs, with the source of each need.
#pragma once

#include "cli/CommandState.h"
#include "cli/Terminal.h"

namespace tidewright {

std::string projectsText(const std::vector<Project>& projects, Date now, const Terminal& terminal);

/// Looks for projects alone and prints them; returns the exit status.
int runProjects(const ScanOptions& options, bool json);

} // namespace tidewright
