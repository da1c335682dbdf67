// An open folder whose entries are read one by one, without leaving a trace in its access time.
#pragma once

#include "core/platform/FileInfo.h"

#include <dirent.h>

#include <optional>

namespace tidewright {

struct StreamEntry {
    const char* name;             ///< valid until the next entry is read
    std::optional<FileKind> kind; ///< absent where the file system does not tell it here
};

/// Movable; closes its folder.
class DirectoryStream {
public:
    /// `path` is taken from the folder `parent` (AT_FDCWD for none). errno tells why it is not
    /// open.
    static DirectoryStream open(int parent, const char* path, Links links);

    ~DirectoryStream();
    DirectoryStream(DirectoryStream&& other) noexcept;
    DirectoryStream& operator=(DirectoryStream&&) = delete;

    explicit operator bool() const { return m_stream != nullptr; }
    int descriptor() const { return dirfd(m_stream); }

    /// The next entry but "." and ".."; absent at the end and on an error, with errno 0 at the end.
    std::optional<StreamEntry> next();

private:
    explicit DirectoryStream(DIR* stream) : m_stream(stream) {}
    DIR* m_stream;
};

} // namespace tidewright
