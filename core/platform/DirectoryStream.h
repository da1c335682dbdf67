// An open folder whose entries are read one by one, with no trace in its access time where the
// system allows that. Opening and reading are each system's; macOS tells the facts along the way.
#pragma once

#include "core/platform/FileInfo.h"

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

    ~DirectoryStream();
    DirectoryStream(DirectoryStream&& other) noexcept;
    DirectoryStream& operator=(DirectoryStream&&) = delete;

    explicit operator bool() const { return m_state != nullptr; }
    int descriptor() const;

    /// The next entry but "." and ".."; absent at the end and on an error, with errno 0 at the end.
    std::optional<StreamEntry> next();

private:
    struct State;
    explicit DirectoryStream(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

} // namespace tidewright
