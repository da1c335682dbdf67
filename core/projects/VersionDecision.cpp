#include "core/projects/VersionDecision.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace tidewright::VersionDecision {

Outcome decide(RequirementKind kind,
               const std::string& version,
               const ScanContext& context,
               const std::optional<AlsoKeep>& alsoKeep) {
    const NeededSet& needed = context.needed;
    if (needed.contains(kind, version))
        return {Decision::keep, fmt::format("Needed by {}.", needed.ownerSummary(kind, version))};
    if (alsoKeep && alsoKeep->matches)
        return {Decision::keep, alsoKeep->reason};
    if (!needed.isEmpty(kind))
        return {Decision::clean,
                fmt::format("No project uses {} {}. Projects need {}.", title(kind), version,
                            fmt::join(needed.versions(kind), ", "))};
    return {Decision::ask, fmt::format("No project on this Mac declares a {} version, so "
                                       "Tidewright can't confirm this one is unused.",
                                       title(kind))};
}

} // namespace tidewright::VersionDecision
