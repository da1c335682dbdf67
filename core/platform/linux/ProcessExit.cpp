#include "core/platform/ProcessExit.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

namespace tidewright {

Result<int, SystemError> openProcessExit(int processID) {
    // glibc 2.36 has a wrapper, older ones don't; the descriptor is closed on exec by itself.
    const long descriptor = syscall(SYS_pidfd_open, processID, 0U);
    if (descriptor < 0)
        return Failure(SystemError{errno, "watch a process", {}});
    return static_cast<int>(descriptor);
}

} // namespace tidewright
