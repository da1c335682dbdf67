// A file that only grows, by whole pieces.
#pragma once

#include "core/platform/posix/FileDescriptor.h"
#include "core/support/Bytes.h"
#include "core/support/URL.h"

#include <optional>
#include <string_view>

namespace tidewright {

/// Movable; closes its file. One thread at a time.
class LogFile {
public:
    /// An empty file that only its user may read, in a folder that is made with all folders above
    /// it where it is missing. What stood at the path is replaced, a link as a link.
    static Result<LogFile, SystemError> create(const URL& url);

    /// Adds the bytes with one call of the system. Where not all of them could be written, those
    /// that were are taken back. If the process is killed meanwhile nobody can do that: the file
    /// may then end with the beginning of these bytes, which Linux cuts between two memory pages.
    Result<void, SystemError> append(std::string_view bytes);

    const URL& url() const { return m_url; }

private:
    LogFile(URL url, FileDescriptor file) : m_url(std::move(url)), m_file(std::move(file)) {}

    /// Does nothing where all that was written is whole.
    Result<void, SystemError> takeBackPiece();

    URL m_url;
    FileDescriptor m_file;
    std::optional<Int64> m_piece; ///< where the bytes begin that are still to be taken back
};

} // namespace tidewright
