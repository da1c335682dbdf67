// Runs one tool with a time limit. No shell takes part: arguments go to the tool as they stand.
#pragma once

#include "core/model/CleanMethod.h"
#include "core/probes/ToolLocator.h"

namespace tidewright {

struct ShellResult {
    int exitCode = 0;        ///< the status, or the number of the signal that ended the tool
    std::string output;      ///< UTF-8; what was not is replaced
    std::string errorOutput; ///< UTF-8; what was not is replaced

    /// Another status than 0 is no error: the caller judges it.
    bool succeeded() const { return exitCode == 0; }

    bool operator==(const ShellResult&) const = default;
};

struct ShellError {
    enum class Kind { toolNotFound, launchFailed, timedOut };
    Kind kind = Kind::toolNotFound;
    std::string tool;       ///< as the caller named it
    std::string underlying; ///< the system's words for a failed launch

    /// A sentence for the user.
    std::string errorDescription() const;

    bool operator==(const ShellError&) const = default;
};

/// A plain value without state; any number of calls may run at once.
struct ShellRunner {
    ToolLocator locator;

    bool isAvailable(const std::string& tool) const { return locator.locate(tool).has_value(); }

    /// Blocks until the tool has ended. When `timeout` is over, or on a cancellation, the tool is
    /// asked to end (SIGTERM, nothing stronger) and the call fails with `timedOut` once it has: the
    /// caller's own token tells the two apart. A failure drops what the tool wrote.
    Result<ShellResult, ShellError> run(const std::string& tool,
                                        const std::vector<std::string>& arguments,
                                        const std::optional<URL>& workingDirectory,
                                        Duration timeout,
                                        const CancelToken& cancel) const;

    Result<ShellResult, ShellError> run(const ShellCommand& command,
                                        Duration timeout,
                                        const CancelToken& cancel) const;
};

} // namespace tidewright
