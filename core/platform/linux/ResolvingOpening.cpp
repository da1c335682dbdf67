#include "core/platform/linux/ResolvingOpening.h"

#include "core/platform/linux/Mounts.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

namespace tidewright {

namespace {

bool isSameMount(int a, int b) {
    struct stat first = {};
    struct stat second = {};
    if (fstat(a, &first) != 0 || fstat(b, &second) != 0 || first.st_dev != second.st_dev)
        return false;
    const auto mount = mountOf(a);
    return mount && mount == mountOf(b);
}

} // namespace

FileDescriptor openResolving(int parent, const char* path, int flags, std::uint64_t resolve) {
    open_how how = {};
    how.flags = static_cast<__u64>(flags | O_CLOEXEC);
    how.resolve = resolve;
    // EAGAIN: something was renamed meanwhile, so that the kernel could not be sure.
    constexpr int attempts = 16;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const long descriptor = syscall(SYS_openat2, parent, path, &how, sizeof how);
        if (descriptor >= 0 || (errno != EAGAIN && errno != EINTR))
            return FileDescriptor(static_cast<int>(descriptor));
    }
    return {};
}

bool isOpenResolvingMissing(int error) { return error == ENOSYS || error == EPERM; }

FileDescriptor openOnSameMount(int parent, const char* name, int flags) {
    flags |= O_NOFOLLOW | O_CLOEXEC;
    FileDescriptor opened =
        openResolving(parent, name, flags, RESOLVE_NO_XDEV | RESOLVE_NO_SYMLINKS);
    if (opened || (!isOpenResolvingMissing(errno) && errno != EAGAIN))
        return opened;
    opened = FileDescriptor(openat(parent, name, flags));
    if (opened && !isSameMount(parent, opened.get())) {
        opened.reset();
        errno = EXDEV;
    }
    return opened;
}

} // namespace tidewright
