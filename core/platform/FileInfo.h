// What the file system says of one location. Nothing here is changed or followed unasked.
#pragma once

#include "core/support/Bytes.h"
#include "core/support/Date.h"
#include "core/support/Result.h"
#include "core/support/URL.h"

#include <optional>

namespace tidewright {

enum class FileKind { regular, directory, symbolicLink, other };

enum class Links { follow, dontFollow };

/// What tells a file from every other one while it exists.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    auto operator<=>(const FileIdentity&) const = default;
};

struct FileInfo {
    FileKind kind = FileKind::other;
    Int64 logicalBytes = 0;
    Int64 allocatedBytes = 0; ///< blocks times 512
    Date modified;
    std::optional<Date> created; ///< where the file system keeps a birth time
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t linkCount = 0;

    FileIdentity identity() const { return {device, inode}; }
};

/// One system call.
Result<FileInfo, SystemError> fileInfo(const URL& url, Links links);

/// Whether something is there, links followed: a link that leads nowhere does not exist.
bool fileExists(const URL& url);

/// Whether this process may execute it, links followed. A folder with the execute bit passes.
bool isExecutableFile(const URL& url);

/// Whether this process may read it, links followed.
bool isReadableFile(const URL& url);

/// Whether it can really be opened for reading just now; closed at once.
bool canOpenForReading(const URL& url);

/// When the entry came into its folder; absent where the system does not keep that.
std::optional<Date> dateAddedToFolder(const URL& url);

/// Whether the system presents this folder to people as one document; never on Linux.
bool isPackage(const URL& folder);

} // namespace tidewright
