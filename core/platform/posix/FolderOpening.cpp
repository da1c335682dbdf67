#include "core/platform/posix/FolderOpening.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>

namespace tidewright {

FileDescriptor walkToFolder(const std::string& path) {
    FileDescriptor folder = openFolderHandle(AT_FDCWD, "/");
    for (std::size_t start = 0; folder && start < path.size();) {
        const std::size_t end = std::min(path.find('/', start), path.size());
        const std::string component = path.substr(start, end - start);
        if (!component.empty())
            folder = openFolderHandle(folder.get(), component.c_str());
        start = end + 1;
    }
    return folder;
}

} // namespace tidewright
