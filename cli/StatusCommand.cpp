#include "cli/StatusCommand.h"

#include "cli/CommandState.h"
#include "cli/ExitStatus.h"
#include "cli/Interrupt.h"
#include "core/model/Coding.h"

#include <fmt/format.h>

namespace tidewright {

namespace {

Ink inkOf(DiskSpace::Health health) {
    return health == DiskSpace::Health::good ? Ink::green : Ink::yellow;
}

std::string spaceText(const std::optional<DiskSpace>& disk) {
    if (!disk)
        return "not known: the volume can't be read";
    return fmt::format("{} of {}", formattedBytes(disk->availableBytes),
                       formattedBytes(disk->totalBytes));
}

} // namespace

std::string statusText(const StatusRecord& status, const Terminal& terminal) {
    std::string text = fmt::format("Free space  {}\n", spaceText(status.disk));
    if (status.disk)
        text += fmt::format("Health      {}\n",
                            terminal.inked(inkOf(status.health), rawValue(status.health)));
    return text + fmt::format("Trash       {}\n",
                              status.trashBytes ? formattedBytes(*status.trashBytes) : "not known");
}

int runStatus(bool json) {
    const Interrupt interrupt;
    const auto state = CommandState::make();
    if (!state)
        return usageError(state.error());
    const DiskMonitor& monitor = (*state)->model().monitor();
    bool isMeasured = false;
    (*state)->model().monitor().refresh([&] { isMeasured = true; });
    bool isStopped = false;
    const CancelCallback onCancel =
        interrupt.token().onCancel([&] { (*state)->post([&isStopped] { isStopped = true; }); });
    CommandState::runUntil([&] { return isMeasured || isStopped; });
    if (isStopped)
        return interruptedStatus;
    const StatusRecord status{monitor.disk(), monitor.health(), monitor.trashBytes()};
    const int printed = json ? printJson(encode(status, commandLineStyle))
                             : printResult(statusText(status, terminalOf(stdout)));
    return printed == doneStatus && !status.disk ? failedStatus : printed;
}

} // namespace tidewright
