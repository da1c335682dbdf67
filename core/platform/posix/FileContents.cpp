#include "core/platform/FileContents.h"

#include "core/platform/posix/FileDescriptor.h"
#include "core/support/Text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

namespace tidewright {

namespace {

constexpr Int64 maximumTextBytes = 64'000'000;
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

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

Result<std::string, SystemError> readFilePrefix(const URL& url, Int64 bytes) {
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
    while (std::cmp_less(contents.size(), bytes)) {
        const auto wanted = static_cast<std::size_t>(bytes) - contents.size();
        const ssize_t count = read(file.get(), buffer.data(), std::min(buffer.size(), wanted));
        if (count == 0)
            break;
        if (count < 0 && errno != EINTR)
            return failure(errno);
        if (count > 0)
            contents.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return contents;
}

Result<std::string, SystemError> readFile(const URL& url, Int64 maxBytes) {
    auto contents = readFilePrefix(url, maxBytes + 1);
    if (contents && std::cmp_greater(contents->size(), maxBytes))
        return Failure(SystemError{EFBIG, "read", url.path()});
    return contents;
}

std::optional<std::string> readText(const URL& url) {
    auto contents = readFile(url, maximumTextBytes);
    if (!contents || !isUTF8(*contents))
        return std::nullopt;
    if (contents->starts_with(byteOrderMark))
        contents->erase(0, byteOrderMark.size());
    return std::move(*contents);
}

} // namespace tidewright
