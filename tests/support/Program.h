// Running the command line as a person or a script would.
#pragma once

#include "core/platform/Process.h"

#include <functional>

namespace tidewright::test {

/// An environment in which everything of the user's is under `home`, temporary files included.
Environment environmentOf(const URL& home);

/// Runs `tidewright` with its output piped. `program` is another copy of it, where one is needed.
ProcessOutput runProgram(const URL& home,
                         std::vector<std::string> arguments,
                         const URL& program = URL(TIDEWRIGHT_PROGRAM));

struct TerminalRun {
    std::string output; ///< everything that it wrote to the terminal, in one stream
    int exitCode = 0;   ///< or the number of the signal that ended it
};

/// What is typed, a moment after a text has appeared on the screen.
struct Typing {
    std::string after;
    std::string keys;
    std::function<void()> then = [] {}; ///< done when it has been typed
};
inline const std::string ctrlC = "\x03";

/// Runs `tidewright` in a terminal of so many columns, and types one thing after the other.
TerminalRun runProgramInTerminal(const URL& home,
                                 const std::vector<std::string>& arguments,
                                 unsigned short columns,
                                 const std::vector<Typing>& typings = {});

} // namespace tidewright::test
