// Running a piece of a test with an ordinary user's rights.
#pragma once

#include <functional>
#include <string>

namespace tidewright::test {

/// Runs `check` in a child process that has given up root's powers (where it had them) and returns
/// the text that it returned; use it to find out what an ordinary user sees. Files that the child
/// must reach have to be open to everybody.
std::string asOrdinaryUser(const std::function<std::string()>& check);

} // namespace tidewright::test
