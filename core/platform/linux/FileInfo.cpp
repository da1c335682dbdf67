#include "core/platform/FileInfo.h"

#include "core/platform/posix/FileTime.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <cerrno>

namespace tidewright {

namespace {

constexpr Int64 bytesPerBlock = 512; // the unit of st_blocks, whatever the file system's own is

FileKind kindOf(mode_t mode) {
    if (S_ISREG(mode))
        return FileKind::regular;
    if (S_ISDIR(mode))
        return FileKind::directory;
    return S_ISLNK(mode) ? FileKind::symbolicLink : FileKind::other;
}

} // namespace

Result<FileInfo, SystemError> fileInfo(const URL& url, Links links) {
    struct statx facts = {};
    const int flags = links == Links::follow ? 0 : AT_SYMLINK_NOFOLLOW;
    if (statx(AT_FDCWD, url.path().c_str(), flags, STATX_BASIC_STATS | STATX_BTIME, &facts) != 0)
        return Failure(SystemError{errno, "look at", url.path()});
    FileInfo info;
    info.kind = kindOf(facts.stx_mode);
    info.logicalBytes = static_cast<Int64>(facts.stx_size);
    info.allocatedBytes = static_cast<Int64>(facts.stx_blocks) * bytesPerBlock;
    info.modified = dateOf(facts.stx_mtime.tv_sec, facts.stx_mtime.tv_nsec);
    if ((facts.stx_mask & STATX_BTIME) != 0)
        info.created = dateOf(facts.stx_btime.tv_sec, facts.stx_btime.tv_nsec);
    info.device = makedev(facts.stx_dev_major, facts.stx_dev_minor);
    info.inode = facts.stx_ino;
    info.linkCount = facts.stx_nlink;
    return info;
}

std::optional<Date> dateAddedToFolder(const URL&) { return std::nullopt; }

bool isPackage(const URL&) { return false; }

} // namespace tidewright
