#include "core/platform/Directory.h"

#include "core/platform/macos/DirectoryStream.h"

#include <fcntl.h>

#include <cerrno>

namespace tidewright {

Result<std::vector<DirectoryEntry>, SystemError> readDirectory(const URL& folder) {
    DirectoryStream stream = DirectoryStream::open(AT_FDCWD, folder.path().c_str(), Links::follow);
    if (!stream)
        return Failure(SystemError{errno, "list", folder.path()});
    std::vector<DirectoryEntry> entries;
    while (const auto entry = stream.next()) {
        const auto kind = entry->kind ? *entry->kind
                                      : fileInfo(folder.appending(entry->name), Links::dontFollow)
                                            .map([](const FileInfo& info) { return info.kind; })
                                            .value_or(FileKind::other);
        entries.push_back({entry->name, kind});
    }
    if (errno != 0)
        return Failure(SystemError{errno, "list", folder.path()});
    return entries;
}

} // namespace tidewright
