// Opening folders so that no link can lead anywhere else.
#pragma once

#include "core/platform/posix/FileDescriptor.h"

#include <string>

namespace tidewright {

/// The folder at an absolute path of which no component may be a link, as a handle: things can be
/// done relative to it, but its entries can't be read. The path may be of any length. errno tells
/// why there is none: ELOOP or ENOTDIR where a link stands in the way.
FileDescriptor openFolderWithoutLinks(const std::string& path);

/// The same, one component after the other: for systems that can't do it in one call.
FileDescriptor walkToFolder(const std::string& path);

/// A handle of the folder `name` (one component, or "/") in the folder `parent`; a link is not
/// followed.
FileDescriptor openFolderHandle(int parent, const char* name);

/// The folder `name` in the folder `parent` for reading its entries. A link is not followed
/// (ELOOP or ENOTDIR), and a place where something is mounted is not entered (EXDEV), not even
/// where the same file system is mounted again.
FileDescriptor openSubfolder(int parent, const char* name);

} // namespace tidewright
