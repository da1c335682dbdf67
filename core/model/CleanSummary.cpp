#include "core/model/CleanSummary.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>

namespace tidewright {

namespace {

template <class Case>
Int64 bytesOf(const std::vector<CleanOutcome>& outcomes) {
    return std::accumulate(
        outcomes.begin(), outcomes.end(), Int64{0}, [](Int64 sum, const CleanOutcome& outcome) {
            return std::holds_alternative<Case>(outcome.status.choice) ? sum + outcome.bytes : sum;
        });
}

} // namespace

bool CleanOutcome::Status::isSuccess() const { return !reason().has_value(); }

std::string_view CleanOutcome::Status::word() const {
    static constexpr std::array<std::string_view, cases.size()> words{"skipped", "failed",
                                                                      "cleaned", "trashed"};
    return words.at(choice.index());
}

std::optional<std::string> CleanOutcome::Status::reason() const {
    if (const auto* skipped = std::get_if<Skipped>(&choice))
        return skipped->reason;
    if (const auto* failed = std::get_if<Failed>(&choice))
        return failed->reason;
    return std::nullopt;
}

Int64 CleanSummary::measuredGain() const {
    return diskAfter.availableBytes - diskBefore.availableBytes;
}

Int64 CleanSummary::estimatedFreed() const {
    return bytesOf<CleanOutcome::Status::Cleaned>(outcomes);
}

Int64 CleanSummary::movedToTrash() const {
    return bytesOf<CleanOutcome::Status::MovedToTrash>(outcomes);
}

std::string CleanSummary::headline() const {
    return "Freed " + formattedBytes(std::max(measuredGain(), Int64{0}));
}

std::string CleanSummary::explanation() const {
    std::string text = fmt::format("Measured on your disk: {} now available.",
                                   formattedBytes(diskAfter.availableBytes));
    if (movedToTrash() >= 1)
        text += fmt::format(" {} moved to the Trash; empty it to free that space too.",
                            formattedBytes(movedToTrash()));
    if (measuredGain() < estimatedFreed() / 2)
        text += " macOS may take a moment to report all reclaimed space.";
    return text;
}

} // namespace tidewright
