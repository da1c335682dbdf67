// Mounts that only a piece of a test can see.
#pragma once

#include "core/support/URL.h"

#include <functional>
#include <optional>
#include <string>

namespace tidewright::test {

/// Runs `check` in a child process whose mounts are its own and vanish with it, and returns the
/// text that it returned. Absent where the machine allows nobody to mount: the test then has
/// nothing to show and skips itself.
std::optional<std::string> withOwnMounts(const std::function<std::string()>& check);

inline constexpr const char* mountsRefused = "this machine lets a test make no mounts of its own";

/// A fresh file system in memory. For use inside `withOwnMounts`, as is the next.
bool mountMemory(const URL& folder);

/// Shows `existing`, a folder or a file, also at `place`, which is of the same kind.
bool mountAgain(const URL& existing, const URL& place);

} // namespace tidewright::test
