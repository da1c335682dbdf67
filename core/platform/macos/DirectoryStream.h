// An open folder whose entries are read in bulk, each with what the size of a tree is made of.
#pragma once

#include "core/platform/FileInfo.h"
#include "core/platform/posix/FileDescriptor.h"

#include <dirent.h>

#include <cstddef>
#include <memory>
#include <optional>

namespace tidewright {

/// What `stat` says of an entry, as far as the size of a tree needs it.
struct EntryFacts {
    std::uint64_t inode = 0;
    std::uint64_t linkCount = 0;
    Int64 allocatedBytes = 0;
};

struct StreamEntry {
    const char* name = nullptr;      ///< valid until the next entry is read
    std::optional<FileKind> kind;    ///< absent where the file system does not tell it here
    std::optional<EntryFacts> facts; ///< the same; always absent for a folder
};

/// Movable; closes its folder.
class DirectoryStream {
public:
    /// `path` is taken from the folder `parent` (AT_FDCWD for none). errno tells why it is not
    /// open.
    static DirectoryStream open(int parent, const char* path, Links links);

    explicit operator bool() const { return static_cast<bool>(m_folder); }
    int descriptor() const { return m_folder.get(); }

    /// The next entry but "." and ".."; absent at the end and on an error, with errno 0 at the end.
    std::optional<StreamEntry> next();

private:
    struct CloseStream {
        void operator()(DIR* stream) const { closedir(stream); }
    };

    explicit DirectoryStream(FileDescriptor folder) : m_folder(std::move(folder)) {}
    void fill();
    std::optional<StreamEntry> nextOfPlainStream();

    FileDescriptor m_folder;
    std::unique_ptr<std::byte[]> m_buffer;
    const std::byte* m_entry = nullptr;              ///< the next one in the buffer
    int m_entriesLeft = 0;                           ///< in the buffer
    std::unique_ptr<DIR, CloseStream> m_plainStream; ///< where entries can't be read in bulk
};

} // namespace tidewright
