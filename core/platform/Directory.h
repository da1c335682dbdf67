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

} // namespace tidewright
