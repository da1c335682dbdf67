#include "core/probes/ShellRunner.h"

#include "core/support/Text.h"

namespace tidewright {

std::string ShellError::errorDescription() const {
    switch (kind) {
    case Kind::toolNotFound:
        return tool + " is not installed or not on PATH.";
    case Kind::launchFailed:
        return "Could not run " + tool + ": " + underlying;
    case Kind::timedOut:
        break;
    }
    return tool + " did not finish in time.";
}

Result<ShellResult, ShellError> ShellRunner::run(const std::string& tool,
                                                 const std::vector<std::string>& arguments,
                                                 const std::optional<URL>& workingDirectory,
                                                 Duration timeout,
                                                 const CancelToken& cancel) const {
    const std::optional<URL> executable = locator.locate(tool);
    if (!executable)
        return Failure(ShellError{ShellError::Kind::toolNotFound, tool, {}});
    const auto output = runProcess(
        {*executable, arguments, locator.environment(), workingDirectory, timeout}, cancel);
    if (output)
        return ShellResult{output->exitCode, repairedUTF8(output->output),
                           repairedUTF8(output->errorOutput)};
    if (output.error().kind == ProcessError::Kind::launchFailed)
        return Failure(ShellError{ShellError::Kind::launchFailed, tool, output.error().reason});
    return Failure(ShellError{ShellError::Kind::timedOut, tool, {}});
}

Result<ShellResult, ShellError> ShellRunner::run(const ShellCommand& command,
                                                 Duration timeout,
                                                 const CancelToken& cancel) const {
    return run(command.tool, command.arguments, command.workingDirectory, timeout, cancel);
}

} // namespace tidewright
