// An approved item that still stands where it was judged.
#pragma once

#include "core/platform/ApprovedPath.h"
#include "core/platform/FileActionError.h"

namespace tidewright {

/// A handle of the folder that really holds the item, for acting in it. Fails when that was moved
/// or replaced, when something else stands there than what was judged, and with ENOENT for
/// `operation` when nothing does or did.
Result<FileDescriptor, FileActionError> folderOfStanding(const ApprovedPath& item,
                                                         const std::string& operation);

} // namespace tidewright
