// Running the command line as a person or a script would.
#pragma once

#include "core/platform/Process.h"

namespace tidewright::test {

/// An environment in which everything of the user's is under `home`.
Environment environmentOf(const URL& home);

/// Runs `tidewright` with its output piped. `program` is another copy of it, where one is needed.
ProcessOutput runProgram(const URL& home,
                         std::vector<std::string> arguments,
                         const URL& program = URL(TIDEWRIGHT_PROGRAM));

struct TerminalRun {
    std::string output; ///< everything that it wrote to the terminal, in one stream
    int exitCode = 0;   ///< or the number of the signal that ended it
};

/// Runs `tidewright` in a terminal of so many columns. After `interruptAfter` has appeared on the
/// screen, `interrupts` times Ctrl-C is typed, a moment apart.
TerminalRun runProgramInTerminal(const URL& home,
                                 const std::vector<std::string>& arguments,
                                 unsigned short columns,
                                 const std::string& interruptAfter = {},
                                 int interrupts = 0);

} // namespace tidewright::test
