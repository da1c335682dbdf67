// Where file systems are mounted.
#pragma once

#include "core/platform/posix/FileDescriptor.h"
#include "core/support/URL.h"

#include <cstdint>
#include <optional>

namespace tidewright {

/// What tells the mount that an open file or folder is on from others; absent where the kernel does
/// not say.
std::optional<std::uint64_t> mountOf(int descriptor);

/// The folder at which something is mounted.
struct MountPoint {
    FileDescriptor folder; ///< a handle
    URL path;
};

/// The mount point above an open folder (or the folder itself), through which the path without
/// links leads to it. The same file system may be mounted elsewhere as well.
Result<MountPoint, SystemError> mountPointOf(int folder, const URL& path);

/// The first place at the path, or below it, at which something is mounted. Links in the path are
/// not looked through.
Result<std::optional<URL>, SystemError> mountInside(const URL& path);

} // namespace tidewright
