// The grammar of the command line: which commands there are and what they take.
#pragma once

namespace tidewright {

/// Reads the arguments, runs the command that they name and returns the program's exit status.
int runCommandLine(int argumentCount, const char* const* arguments);

} // namespace tidewright
