#include "core/platform/linux/DirectoryStream.h"

#include "core/platform/posix/FileDescriptor.h"

#include <fcntl.h>

#include <cerrno>
#include <string_view>
#include <utility>

namespace tidewright {

namespace {

FileDescriptor openFolder(int parent, const char* path, Links links) {
    const int flags =
        O_RDONLY | O_DIRECTORY | O_CLOEXEC | (links == Links::dontFollow ? O_NOFOLLOW : 0);
    FileDescriptor folder(openat(parent, path, flags | O_NOATIME));
    if (folder || errno != EPERM) // EPERM: O_NOATIME is for the owner alone
        return folder;
    return FileDescriptor(openat(parent, path, flags));
}

std::optional<FileKind> kindOf(unsigned char type) {
    switch (type) {
    case DT_UNKNOWN:
        return std::nullopt;
    case DT_REG:
        return FileKind::regular;
    case DT_DIR:
        return FileKind::directory;
    case DT_LNK:
        return FileKind::symbolicLink;
    default:
        return FileKind::other;
    }
}

} // namespace

DirectoryStream DirectoryStream::open(int parent, const char* path, Links links) {
    FileDescriptor folder = openFolder(parent, path, links);
    DIR* stream = folder ? fdopendir(folder.get()) : nullptr;
    if (stream != nullptr)
        folder.release(); // the stream owns it now
    return DirectoryStream(stream);
}

DirectoryStream::~DirectoryStream() {
    if (m_stream != nullptr)
        closedir(m_stream);
}

DirectoryStream::DirectoryStream(DirectoryStream&& other) noexcept
    : m_stream(std::exchange(other.m_stream, nullptr)) {}

std::optional<StreamEntry> DirectoryStream::next() {
    while (true) {
        errno = 0;
        const dirent* entry = readdir(m_stream);
        if (entry == nullptr)
            return std::nullopt;
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            return StreamEntry{entry->d_name, kindOf(entry->d_type)};
    }
}

} // namespace tidewright
