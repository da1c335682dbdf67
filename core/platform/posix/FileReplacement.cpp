#include "core/platform/FileReplacement.h"

#include "core/platform/ResolvedLinks.h"
#include "core/platform/posix/FileDescriptor.h"

#include <fmt/format.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace tidewright {

namespace {

constexpr mode_t folderMode = S_IRWXU;
constexpr mode_t fileMode = S_IRUSR | S_IWUSR;
constexpr mode_t permissions = S_IRWXU | S_IRWXG | S_IRWXO;

Result<URL, SystemError> realLocation(const URL& url) {
    if (url.path().find('\0') != std::string::npos)
        return Failure(SystemError{EINVAL, "find", url.path()});
    return resolvedLinks(url);
}

bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(file, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            return false;
        if (count > 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

bool bringToDisk(int file) {
#ifdef F_FULLFSYNC // where fsync leaves the bytes in the memory of the disk
    if (fcntl(file, F_FULLFSYNC) == 0)
        return true;
#endif
    while (fsync(file) != 0)
        if (errno != EINTR)
            return false;
    return true;
}

/// As far as this process may; what it may not do leaves the file more private than it was.
void makeLike(const std::string& earlier, int file) {
    struct stat status = {};
    if (stat(earlier.c_str(), &status) != 0)
        return;
    if (fchown(file, status.st_uid, status.st_gid) == 0)
        (void)fchmod(file, status.st_mode & permissions);
}

/// Not every file system can do it, and the name is given in any case.
void bringFolderToDisk(const URL& folder) {
    const FileDescriptor opened(open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened)
        (void)bringToDisk(opened.get());
}

} // namespace

Result<void, SystemError> makeFolder(const URL& url) {
    const std::string& path = url.path();
    for (std::size_t end = 0; end < path.size();) {
        end = std::min(path.find('/', end + 1), path.size());
        const std::string folder = path.substr(0, end);
        const bool isThere = access(folder.c_str(), F_OK) == 0;
        if (!isThere && mkdir(folder.c_str(), folderMode) != 0 && errno != EEXIST)
            return Failure(SystemError{errno, "make", folder});
    }
    return {};
}

Result<void, SystemError> replaceFile(const URL& url, std::string_view contents) {
    const auto place = realLocation(url);
    if (!place)
        return Failure(place.error());
    const URL folder = place->deletingLastPathComponent();
    if (auto made = makeFolder(folder); !made)
        return made;
    const std::string& path = place->path();
    std::string newPath = path + ".XXXXXX";
    const FileDescriptor file(mkostemp(newPath.data(), O_CLOEXEC));
    if (!file)
        return Failure(SystemError{errno, "make", newPath});
    makeLike(path, file.get());
    const bool isReplaced = writeAll(file.get(), contents) && bringToDisk(file.get()) &&
                            rename(newPath.c_str(), path.c_str()) == 0;
    if (!isReplaced) {
        const int error = errno;
        unlink(newPath.c_str());
        return Failure(SystemError{error, "write", path});
    }
    bringFolderToDisk(folder);
    return {};
}

Result<void, SystemError> putFileAside(const URL& url, std::string_view suffix) {
    const auto place = realLocation(url);
    if (!place)
        return Failure(place.error());
    const std::string name = place->path() + std::string(suffix);
    std::string free = name;
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    // An empty file of our own takes the name, so that only it can be overwritten: not every file
    // system can rename without that.
    for (int number = 2; !FileDescriptor(open(free.c_str(), flags, fileMode)); ++number) {
        if (errno != EEXIST)
            return Failure(SystemError{errno, "make", free});
        free = fmt::format("{}-{}", name, number);
    }
    if (rename(place->path().c_str(), free.c_str()) == 0)
        return {};
    const int error = errno;
    unlink(free.c_str());
    return Failure(SystemError{error, "put aside", place->path()});
}

} // namespace tidewright
