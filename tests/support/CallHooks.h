// Stepping in where a folder is read and an entry removed, so that what others do meanwhile, and
// what a disk may answer, happens at a chosen moment.
#pragma once

#include <dirent.h>

#include <functional>
#include <string>

namespace tidewright::test {

/// The calls of this thread go through the functions while it lives. One at a time; those that are
/// empty change nothing.
class CallHooks {
public:
    /// Is given each entry that `readdir` read. May change it, and returns an error number in place
    /// of it, or 0.
    std::function<int(dirent&)> onRead;
    /// Is given the name and the flags before `unlinkat`. Returns an error number in place of the
    /// call, or 0.
    std::function<int(const std::string&, int)> onUnlink;

    CallHooks();
    ~CallHooks();
    CallHooks(const CallHooks&) = delete;
    CallHooks& operator=(const CallHooks&) = delete;
};

} // namespace tidewright::test
