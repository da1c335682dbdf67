#include "core/platform/posix/FolderOpening.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <optional>

namespace tidewright {

namespace {

/// openat2(2), which the C library has no function for; Linux has it from 5.6 on.
FileDescriptor openResolving(int parent, const char* path, int flags, __u64 resolve) {
    open_how how = {};
    how.flags = static_cast<__u64>(flags);
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

/// Whether the call is missing: an old kernel, or a sandbox that does not know it.
bool isMissing(int error) { return error == ENOSYS || error == EPERM; }

/// The mount that a folder is on. Asked for a handle of no bytes, the call answers that alone.
std::optional<int> mountOf(int folder) {
    file_handle handle = {};
    int mount = 0;
    if (name_to_handle_at(folder, "", &handle, &mount, AT_EMPTY_PATH) == 0 || errno == EOVERFLOW)
        return mount;
    return std::nullopt;
}

bool isSameMount(int a, int b) {
    struct stat first = {};
    struct stat second = {};
    if (fstat(a, &first) != 0 || fstat(b, &second) != 0 || first.st_dev != second.st_dev)
        return false;
    return mountOf(a) == mountOf(b);
}

} // namespace

FileDescriptor openFolderWithoutLinks(const std::string& path) {
    FileDescriptor folder = openResolving(AT_FDCWD, path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC,
                                          RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS);
    if (folder || (!isMissing(errno) && errno != ENAMETOOLONG && errno != EAGAIN))
        return folder;
    return walkToFolder(path);
}

FileDescriptor openFolderHandle(int parent, const char* name) {
    return FileDescriptor(openat(parent, name, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

FileDescriptor openSubfolder(int parent, const char* name) {
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    FileDescriptor folder =
        openResolving(parent, name, flags, RESOLVE_NO_XDEV | RESOLVE_NO_SYMLINKS);
    if (folder || (!isMissing(errno) && errno != EAGAIN))
        return folder;
    folder = FileDescriptor(openat(parent, name, flags));
    if (folder && !isSameMount(parent, folder.get())) {
        folder.reset();
        errno = EXDEV;
    }
    return folder;
}

} // namespace tidewright
