#include "core/platform/Directory.h"

#include "core/platform/DirectoryStream.h"
#include "core/platform/posix/FileTime.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace tidewright {

namespace {

constexpr Int64 bytesPerBlock = 512; // the unit of st_blocks, whatever the file system's own is

/// Of an entry of an open folder; its kind, too, where the folder did not tell it.
DetailedEntry detailed(int folder, const StreamEntry& entry) {
    DetailedEntry result{entry.name, entry.kind.value_or(FileKind::other), std::nullopt};
    if (entry.kind == FileKind::directory || entry.kind == FileKind::symbolicLink)
        return result;
    struct stat status = {};
    if (fstatat(folder, entry.name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return result;
    if (S_ISDIR(status.st_mode))
        result.kind = FileKind::directory;
    else if (S_ISLNK(status.st_mode))
        result.kind = FileKind::symbolicLink;
    else if (S_ISREG(status.st_mode))
        result.kind = FileKind::regular;
    if (result.kind == FileKind::regular || result.kind == FileKind::other)
        result.facts = FileFacts{status.st_blocks * bytesPerBlock, modificationDate(status)};
    return result;
}

} // namespace

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

Result<std::vector<DetailedEntry>, SystemError> readDetailedDirectory(const URL& folder) {
    DirectoryStream stream = DirectoryStream::open(AT_FDCWD, folder.path().c_str(), Links::follow);
    if (!stream)
        return Failure(SystemError{errno, "list", folder.path()});
    std::vector<DetailedEntry> entries;
    while (const auto entry = stream.next())
        entries.push_back(detailed(stream.descriptor(), *entry));
    if (errno != 0)
        return Failure(SystemError{errno, "list", folder.path()});
    return entries;
}

} // namespace tidewright
