// `tidewright check PATH…`: what the path policy says of paths.
#pragma once

#include "cli/Terminal.h"
#include "core/cleaning/PathPolicy.h"

namespace tidewright {

struct PathVerdict {
    std::string path; ///< standardised
    bool allowed = false;
    std::optional<PolicyViolation::Kind> violation; ///< absent when allowed
    std::optional<std::string> sentence;            ///< absent when allowed

    static constexpr auto fields() {
        return std::tuple{
            field("path", &PathVerdict::path), field("allowed", &PathVerdict::allowed),
            field("violation", &PathVerdict::violation), field("sentence", &PathVerdict::sentence)};
    }
};

std::string verdictsText(const std::vector<PathVerdict>& verdicts, const Terminal& terminal);

/// Judges paths as they would be judged before cleaning; `isProjectItem` is said of all of them.
/// Returns the exit status.
int runCheck(const std::vector<std::string>& paths, bool isProjectItem, bool json);

} // namespace tidewright
