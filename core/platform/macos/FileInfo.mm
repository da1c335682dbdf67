#include "core/platform/FileInfo.h"

#import "core/platform/macos/Conversion.h"
#include "core/platform/posix/FileTime.h"

#include <sys/stat.h>

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
    struct stat facts = {};
    const char* path = url.path().c_str();
    if ((links == Links::follow ? stat(path, &facts) : lstat(path, &facts)) != 0)
        return Failure(SystemError{errno, "look at", url.path()});
    return FileInfo{.kind = kindOf(facts.st_mode),
                    .logicalBytes = facts.st_size,
                    .allocatedBytes = facts.st_blocks * bytesPerBlock,
                    .modified = modificationDate(facts),
                    .created =
                        dateOf(facts.st_birthtimespec.tv_sec, facts.st_birthtimespec.tv_nsec),
                    .device = static_cast<std::uint64_t>(facts.st_dev),
                    .inode = facts.st_ino,
                    .linkCount = facts.st_nlink};
}

bool isPackage(const URL& folder) {
    @autoreleasepool {
        NSDictionary<NSURLResourceKey, id>* values =
            [foundationURL(folder) resourceValuesForKeys:@[ NSURLIsPackageKey ] error:nil];
        NSNumber* answer = values[NSURLIsPackageKey];
        return answer.boolValue; // of nothing: no
    }
}

std::optional<Date> dateAddedToFolder(const URL& url) {
    @autoreleasepool {
        NSDictionary<NSURLResourceKey, id>* values =
            [foundationURL(url) resourceValuesForKeys:@[ NSURLAddedToDirectoryDateKey ] error:nil];
        NSDate* added = values[NSURLAddedToDirectoryDateKey];
        if (added == nil)
            return std::nullopt;
        return dateFrom(added);
    }
}

} // namespace tidewright
