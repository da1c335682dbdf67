#include "core/platform/ProcessExit.h"

#include "core/platform/posix/FileDescriptor.h"

#include <fcntl.h>
#include <sys/event.h>

#include <cerrno>

namespace tidewright {

namespace {

/// Whether the queue takes the change.
bool change(const FileDescriptor& queue, const struct kevent& event) {
    return kevent(queue.get(), &event, 1, nullptr, 0, nullptr) == 0;
}

bool watchForExit(const FileDescriptor& queue, int processID) {
    struct kevent event = {};
    EV_SET(&event, static_cast<uintptr_t>(processID), EVFILT_PROC, EV_ADD, NOTE_EXIT, 0, nullptr);
    return change(queue, event);
}

/// Puts an event into the queue that stays there.
bool makeReadable(const FileDescriptor& queue) {
    struct kevent event = {};
    EV_SET(&event, 0, EVFILT_USER, EV_ADD, 0, 0, nullptr);
    if (!change(queue, event))
        return false;
    EV_SET(&event, 0, EVFILT_USER, 0, NOTE_TRIGGER, 0, nullptr);
    return change(queue, event);
}

} // namespace

// The descriptor is a queue of kernel events with one that nobody takes out, so that it stays
// readable. The event comes when the process begins to end, which may be shortly before it can be
// waited for without blocking. A process that has ended already can't be watched any more (ESRCH);
// then an event of our own stands in for its.
Result<int, SystemError> openProcessExit(int processID) {
    FileDescriptor queue(kqueue());
    if (!queue || fcntl(queue.get(), F_SETFD, FD_CLOEXEC) != 0)
        return Failure(SystemError{errno, "watch a process", {}});
    if (!watchForExit(queue, processID) && (errno != ESRCH || !makeReadable(queue)))
        return Failure(SystemError{errno, "watch a process", {}});
    return queue.release();
}

} // namespace tidewright
