// Running the tools of a developer's machine: shells, and what checks documents.
#pragma once

#include "core/platform/Process.h"

namespace tidewright::test {

/// Runs a program of the search path in a home of its own, which must end in half a minute.
ProcessOutput runTool(const URL& home, const std::vector<std::string>& words);

/// What it writes to standard output; it must succeed without a word on standard error.
std::string answerOfTool(const URL& home, const std::vector<std::string>& words);

} // namespace tidewright::test
