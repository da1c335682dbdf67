#include "core/platform/LogFile.h"

#include "core/platform/FileReplacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>

namespace tidewright {

namespace {

constexpr mode_t fileMode = S_IRUSR | S_IWUSR;
// So that nobody who keeps putting something at the path can hold the caller up for ever.
constexpr int attempts = 100;

Result<FileDescriptor, SystemError> makeFile(const std::string& path) {
    constexpr int flags = O_WRONLY | O_APPEND | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        FileDescriptor file(open(path.c_str(), flags, fileMode));
        if (file)
            return file;
        if (errno != EEXIST)
            return Failure(SystemError{errno, "make", path});
        if (unlink(path.c_str()) != 0 && errno != ENOENT)
            return Failure(SystemError{errno, "replace", path});
    }
    return Failure(SystemError{EEXIST, "make", path});
}

} // namespace

Result<LogFile, SystemError> LogFile::create(const URL& url) {
    const std::string& path = url.path();
    if (path.find('\0') != std::string::npos)
        return Failure(SystemError{EINVAL, "make", path});
    if (auto folder = makeFolder(url.deletingLastPathComponent()); !folder)
        return Failure(std::move(folder.error()));
    auto file = makeFile(path);
    if (!file)
        return Failure(std::move(file.error()));
    return LogFile(url, std::move(*file));
}

Result<void, SystemError> LogFile::append(std::string_view bytes) {
    if (auto whole = takeBackPiece(); !whole)
        return whole;
    ssize_t count = -1;
    do
        count = write(m_file.get(), bytes.data(), bytes.size());
    while (count < 0 && errno == EINTR);
    if (count < 0)
        return Failure(SystemError{errno, "write", m_url.path()});
    if (std::cmp_equal(count, bytes.size()))
        return {};
    m_piece = lseek(m_file.get(), 0, SEEK_CUR) - count;
    if (auto whole = takeBackPiece(); !whole)
        return whole;
    // A short write does not say why it was; there was no room for more.
    return Failure(SystemError{ENOSPC, "write", m_url.path()});
}

Result<void, SystemError> LogFile::takeBackPiece() {
    if (!m_piece)
        return {};
    while (ftruncate(m_file.get(), *m_piece) != 0)
        if (errno != EINTR)
            return Failure(SystemError{errno, "shorten", m_url.path()});
    m_piece.reset();
    return {};
}

} // namespace tidewright
