// The command line: from what was typed to the command that it names.
#pragma once

namespace tidewright {

/// Reads the arguments, runs the command that they name and returns the program's exit status.
int runCommandLine(int argumentCount, const char* const* arguments);

} // namespace tidewright
