// Moving an approved item to the Trash, from which the user can put it back: the system's own on
// macOS; on Linux the one of the freedesktop.org Trash specification, version 1.0.
#pragma once

#include "core/platform/ApprovedPath.h"
#include "core/platform/FileActionError.h"

namespace tidewright {

/// Moves the item, a link as the link that it is. Where it fails the item stays where it was, and
/// nothing of it is left in the Trash. An item that is not there can't be moved: that fails.
/// Blocks; any number may run at once.
Result<void, FileActionError> moveToTrash(const ApprovedPath& item);

} // namespace tidewright
