#include "core/platform/posix/PlainEntries.h"

#include <cerrno>
#include <string_view>

namespace tidewright {

namespace {

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

PlainEntries::PlainEntries(FileDescriptor folder)
    : m_stream(folder ? fdopendir(folder.get()) : nullptr) {
    if (m_stream)
        folder.release(); // the stream owns it now
}

std::optional<StreamEntry> PlainEntries::next() {
    while (true) {
        errno = 0;
        const dirent* entry = readdir(m_stream.get());
        if (entry == nullptr)
            return std::nullopt;
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            return StreamEntry{entry->d_name, kindOf(entry->d_type), std::nullopt};
    }
}

} // namespace tidewright
