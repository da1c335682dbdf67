// The one question on which safety turns: does anything on this machine still need this version?
#pragma once

#include "core/model/Decision.h"
#include "core/scan/ScanContext.h"

namespace tidewright::VersionDecision {

/// A rule's own ground for keeping a version that no project names, such as its being the newest.
struct AlsoKeep {
    std::string reason;
    bool matches = false; ///< where it does not match, the reason plays no part
};

struct Outcome {
    Decision decision = Decision::keep;
    std::string reason; ///< for the user

    bool operator==(const Outcome&) const = default;
};

/// Kept when something needs exactly this text of a version, then on the rule's own ground; to be
/// cleaned when projects declare this kind of thing and none names this version. When nothing
/// declares the kind at all, the absence of an owner proves nothing and the user is asked.
Outcome decide(RequirementKind kind,
               const std::string& version,
               const ScanContext& context,
               const std::optional<AlsoKeep>& alsoKeep = std::nullopt);

} // namespace tidewright::VersionDecision
