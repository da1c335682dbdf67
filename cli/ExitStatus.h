// How a command ends: its exit status, and what is said when it does not go well.
#pragma once

#include "core/support/Json.h"

#include <string_view>

namespace tidewright {

inline constexpr int doneStatus = 0;
inline constexpr int failedStatus = 1;  ///< done, but something failed
inline constexpr int usageStatus = 2;   ///< wrong usage
inline constexpr int refusedStatus = 3; ///< not done, because nobody confirmed it

/// Says one sentence on standard error and returns the status for wrong usage.
int usageError(std::string_view sentence);

/// Writes a command's result to standard output; returns its exit status.
int printResult(std::string_view text);

/// The same with one JSON document.
int printJson(const Json& document);

} // namespace tidewright
