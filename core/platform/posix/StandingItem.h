// An approved item that still stands where it was judged.
#pragma once

#include "core/platform/ApprovedPath.h"
#include "core/platform/FileActionError.h"

namespace tidewright {

struct StandingItem {
    FileDescriptor folder; ///< a handle of the folder that really holds it, for acting in it
    std::string name;
    FileIdentity identity;
    bool isFolder = false;
};

/// Absent when the item is gone, which ENOENT and ENOTDIR alone prove. Fails where nobody can tell,
/// and when its folder was moved or replaced, or something else stands there than what was judged.
Result<std::optional<StandingItem>, FileActionError> standingItem(const ApprovedPath& item);

} // namespace tidewright
