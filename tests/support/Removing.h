// What tests of removal need: leave to remove what they made, and how it ended in words.
#pragma once

#include "core/cleaning/PathPolicy.h"
#include "core/platform/FileActionError.h"
#include "tests/support/TempHome.h"

namespace tidewright::test {

/// By the policy of an empty session in this home. Fails the test where it is refused.
ApprovedPath approvedPath(const TempHome& home, const URL& item);
std::vector<ApprovedPath> approvedPaths(const TempHome& home, const std::vector<URL>& items);

/// In words: "done", or "mounted /path (Device or resource busy)".
std::string outcome(const Result<void, FileActionError>& result);

/// What is under a folder, in order, with a space between two.
std::string namesUnder(const URL& folder);

} // namespace tidewright::test
