#include "core/model/CleanSummary.h"

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

} // namespace tidewright
