// The entries of one folder.
#pragma once

#include "core/platform/FileInfo.h"

#include <string>
#include <vector>

namespace tidewright {

struct DirectoryEntry {
    std::string name;                ///< as bytes
    FileKind kind = FileKind::other; ///< of the entry itself, never of a link's target
};

/// All entries but "." and "..", hidden ones included, in the order that the file system gives.
/// The folder's access time stays as it was where the system allows that.
Result<std::vector<DirectoryEntry>, SystemError> readDirectory(const URL& folder);

/// What is known of a file without opening it.
struct FileFacts {
    Int64 allocatedBytes = 0;
    Date modified;
};

struct DetailedEntry {
    std::string name;                ///< as bytes
    FileKind kind = FileKind::other; ///< of the entry itself, never of a link's target
    std::optional<FileFacts> facts;  ///< absent for folders and links, and where it can't be read
};

/// The same with the facts of each file, by one call per file and none per folder or link.
Result<std::vector<DetailedEntry>, SystemError> readDetailedDirectory(const URL& folder);

} // namespace tidewright
