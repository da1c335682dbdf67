// Letting the event loop of a test run until something is so.
#pragma once

#include <functional>

namespace tidewright::test {

/// Runs the event loop until `holds` is true, and tells whether it became so before the test had
/// to give up waiting. Nothing is asserted about the time it takes.
[[nodiscard]] bool becomesTrue(const std::function<bool()>& holds);

/// Runs what is waiting in the event loop now.
void runEventLoopOnce();

} // namespace tidewright::test
