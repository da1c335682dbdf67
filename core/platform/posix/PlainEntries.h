// The entries of an open folder as `readdir` gives them.
#pragma once

#include "core/platform/DirectoryStream.h"
#include "core/platform/posix/FileDescriptor.h"

#include <dirent.h>

#include <memory>
#include <optional>

namespace tidewright {

/// Movable; closes its folder.
class PlainEntries {
public:
    /// Takes the folder over; errno tells why it can't be read.
    explicit PlainEntries(FileDescriptor folder);

    explicit operator bool() const { return m_stream != nullptr; }
    int descriptor() const { return dirfd(m_stream.get()); }

    /// As DirectoryStream::next, without facts.
    std::optional<StreamEntry> next();

private:
    struct CloseStream {
        void operator()(DIR* stream) const { closedir(stream); }
    };
    std::unique_ptr<DIR, CloseStream> m_stream;
};

} // namespace tidewright
