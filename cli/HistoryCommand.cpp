#include "cli/HistoryCommand.h"

#include "cli/CommandState.h"
#include "cli/ExitStatus.h"
#include "cli/Layout.h"
#include "core/model/Coding.h"
#include "core/support/LocalTime.h"
#include "core/support/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <ranges>

namespace tidewright {

namespace {

/// "2026-03-01 10:30"
std::string timeText(Date date) {
    std::string time = localTimeText(date).substr(0, std::string_view("2026-03-01T10:30").size());
    std::ranges::replace(time, 'T', ' ');
    return time;
}

std::string countsText(const HistoryEntry& entry) {
    std::string text =
        counted(static_cast<std::size_t>(std::max<Int64>(entry.itemCount, 0)), "item", "items");
    if (entry.movedToTrash > 0)
        text += fmt::format(", {} moved to the Trash", formattedBytes(entry.movedToTrash));
    if (entry.failures > 0)
        text += fmt::format(", {} failed", entry.failures);
    return text;
}

} // namespace

std::string historyText(const std::vector<HistoryEntry>& entries,
                        Int64 totalFreed,
                        const Terminal& terminal) {
    if (entries.empty())
        return "Nothing has been cleaned yet.\n";
    std::size_t sizeColumns = 0;
    for (const HistoryEntry& entry : entries)
        sizeColumns = std::max(sizeColumns, displayWidth(formattedBytes(entry.freed())));
    std::string text;
    for (const HistoryEntry& entry : entries | std::views::reverse) {
        const std::string line = fmt::format(
            "{}  {}  {}", timeText(entry.date),
            rightAligned(formattedBytes(entry.freed()), sizeColumns), countsText(entry));
        text += fitted(line, 0, terminal) + "\n";
    }
    return text + fmt::format("\nFreed so far: {} in {}\n", formattedBytes(totalFreed),
                              counted(entries.size(), "cleanup", "cleanups"));
}

int runHistory(bool json) {
    const auto state = CommandState::make();
    if (!state)
        return usageError(state.error());
    const HistoryStore& history = (*state)->model().history();
    if (json)
        return printJson(encode(history.entries(), commandLineStyle));
    return printResult(historyText(history.entries(), history.totalFreed(), terminalOf(stdout)));
}

} // namespace tidewright
