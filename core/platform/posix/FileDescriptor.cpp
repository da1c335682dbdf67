#include "core/platform/posix/FileDescriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace tidewright {

namespace {

/// The same file at a number above the standard descriptors, closed on exec.
FileDescriptor movedUp(int descriptor) {
    FileDescriptor original(descriptor);
    return FileDescriptor(fcntl(original.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

} // namespace

void FileDescriptor::reset() {
    if (m_descriptor >= 0)
        close(m_descriptor);
    m_descriptor = -1;
}

Result<Pipe, SystemError> makePipe() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0)
        return Failure(SystemError{errno, "make a pipe", {}});
    Pipe result{movedUp(ends[0]), movedUp(ends[1])};
    if (!result.readEnd || !result.writeEnd)
        return Failure(SystemError{errno, "make a pipe", {}});
    return result;
}

} // namespace tidewright
