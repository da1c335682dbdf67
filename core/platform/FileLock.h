// A lock that one process after the other holds, and that ends with its holder.
#pragma once

#include "core/platform/posix/FileDescriptor.h"
#include "core/support/Date.h"
#include "core/support/URL.h"

namespace tidewright {

/// Held until it is destroyed or the process ends, however that comes. Only those are kept out who
/// take it as well.
class FileLock {
public:
    /// Makes the file where it is missing, in a folder that exists; it stays there, empty. Blocks
    /// while others hold the lock, no longer than `longestWait`.
    FileLock(const URL& file, Duration longestWait);

    /// False where others went on holding it, and where no lock can be had at all.
    bool isHeld() const { return static_cast<bool>(m_file); }

private:
    FileDescriptor m_file; ///< the lock belongs to what was opened
};

} // namespace tidewright
