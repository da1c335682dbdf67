// Starting a program and collecting what it writes. No shell takes part.
#pragma once

#include "core/support/Bytes.h"
#include "core/support/CancelToken.h"
#include "core/support/Date.h"
#include "core/support/Result.h"
#include "core/support/URL.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tidewright {

using Environment = std::map<std::string, std::string>;

/// The environment of this process; of a name that stands there twice, the first value.
Environment processEnvironment();

struct ProcessRequest {
    URL executable;
    std::vector<std::string> arguments;  ///< without the program's own name
    Environment environment;             ///< all of it
    std::optional<URL> workingDirectory; ///< absent: this process's own
    Duration timeout{0};                 ///< on a monotonic clock
};

struct ProcessOutput {
    int exitCode = 0; ///< the exit status, or the number of the signal that ended the program
    std::string output;
    std::string errorOutput;
};

struct ProcessError {
    enum class Kind { launchFailed, timedOut };
    Kind kind = Kind::launchFailed;
    std::string reason; ///< the system's words for a failed launch
};

/// Runs a program to its end and returns everything that it wrote, read as it came. The program
/// leads a process group of its own, reads nothing (its input is the null device), inherits no
/// other descriptor, and starts with no signal blocked or ignored.
///
/// When the time is over, or on a cancellation, its group gets SIGTERM, and the call returns
/// `timedOut` after the program has ended: nothing stronger is ever sent. After an ordinary end the
/// pipes are read until every descendant that holds them has closed them.
///
/// Blocks the calling thread; any number of calls may run at once.
Result<ProcessOutput, ProcessError> runProcess(const ProcessRequest& request,
                                               const CancelToken& cancel);

} // namespace tidewright
