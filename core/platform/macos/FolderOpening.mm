#include "core/platform/posix/FolderOpening.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace tidewright {

FileDescriptor openFolderWithoutLinks(const std::string& path) {
    FileDescriptor folder(open(path.c_str(), O_SEARCH | O_DIRECTORY | O_NOFOLLOW_ANY | O_CLOEXEC));
    if (folder || errno != ENAMETOOLONG)
        return folder;
    return walkToFolder(path);
}

FileDescriptor openFolderHandle(int parent, const char* name) {
    return FileDescriptor(openat(parent, name, O_SEARCH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

FileDescriptor openSubfolder(int parent, const char* name) {
    FileDescriptor folder(openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat outside = {};
    struct stat inside = {};
    if (!folder || (fstat(parent, &outside) == 0 && fstat(folder.get(), &inside) == 0 &&
                    outside.st_dev == inside.st_dev))
        return folder;
    folder.reset();
    errno = EXDEV;
    return folder;
}

} // namespace tidewright
