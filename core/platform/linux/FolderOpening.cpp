#include "core/platform/posix/FolderOpening.h"

#include "core/platform/linux/ResolvingOpening.h"

#include <fcntl.h>
#include <linux/openat2.h>

#include <cerrno>

namespace tidewright {

FileDescriptor openFolderWithoutLinks(const std::string& path) {
    FileDescriptor folder = openResolving(AT_FDCWD, path.c_str(), O_PATH | O_DIRECTORY,
                                          RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS);
    if (folder || (!isOpenResolvingMissing(errno) && errno != ENAMETOOLONG && errno != EAGAIN))
        return folder;
    return walkToFolder(path);
}

FileDescriptor openFolderHandle(int parent, const char* name) {
    return FileDescriptor(openat(parent, name, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

FileDescriptor openSubfolder(int parent, const char* name) {
    return openOnSameMount(parent, name, O_RDONLY | O_DIRECTORY);
}

} // namespace tidewright
