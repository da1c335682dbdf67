// Calls of the system that fail on command. In a program that links this, the functions of the C
// library named here are ours: they count, fail where a test has asked for it, and otherwise pass
// everything on.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace tidewright::test {

/// The names of all calls that can be made to fail.
const std::vector<std::string>& faultyCalls();

struct Fault {
    std::string call;
    std::size_t first = 0; ///< the number of the first call that fails, from 1
    std::size_t count = 1; ///< and how many after another do
    int error = 0;         ///< `errno`
};

/// Counts the calls of this process while it exists, and makes those of its fault fail. One at a
/// time; calls may come from any thread.
class SystemCalls {
public:
    SystemCalls();
    explicit SystemCalls(const Fault& fault);
    ~SystemCalls();
    SystemCalls(const SystemCalls&) = delete;
    SystemCalls& operator=(const SystemCalls&) = delete;

    std::map<std::string, std::size_t> counts() const;
    /// Whether a call failed by order.
    bool hasFailed() const;
};

} // namespace tidewright::test
