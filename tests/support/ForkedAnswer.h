// Asking a child process, which may give up what the test itself must keep.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace tidewright::test {

/// Runs `check` in a child process and returns the text that it returned. Absent where `prepare`,
/// which the child runs first, returned false.
std::optional<std::string> forkedAnswer(bool (*prepare)(),
                                        const std::function<std::string()>& check);

} // namespace tidewright::test
