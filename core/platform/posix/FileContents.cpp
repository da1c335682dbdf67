#include "core/platform/FileContents.h"

#include "core/platform/posix/FileDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace tidewright {

namespace {

/// Linux refuses O_NOATIME to those who don't own the file; macOS does not have it.
FileDescriptor openForReading(const char* path) {
    const int flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK; // a pipe must not be waited for
#ifdef O_NOATIME
    FileDescriptor file(open(path, flags | O_NOATIME));
    if (file || errno != EPERM)
        return file;
#endif
    return FileDescriptor(open(path, flags));
}

} // namespace

Result<std::string, SystemError> readFile(const URL& url, Int64 maxBytes) {
    const auto failure = [&](int code) { return Failure(SystemError{code, "read", url.path()}); };
    const FileDescriptor file = openForReading(url.path().c_str());
    if (!file)
        return failure(errno);
    struct stat status = {};
    if (fstat(file.get(), &status) != 0)
        return failure(errno);
    if (!S_ISREG(status.st_mode))
        return failure(EINVAL);

    std::string contents;
    std::array<char, 64 * 1024> buffer; // NOLINT: filled by read
    while (true) {
        const ssize_t count = read(file.get(), buffer.data(), buffer.size());
        if (count == 0)
            return contents;
        if (count < 0 && errno != EINTR)
            return failure(errno);
        if (count > 0)
            contents.append(buffer.data(), static_cast<std::size_t>(count));
        if (std::cmp_greater(contents.size(), maxBytes))
            return failure(EFBIG);
    }
}

} // namespace tidewright
