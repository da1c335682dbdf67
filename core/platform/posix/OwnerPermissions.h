// Giving the owner all permissions on something that is about to be removed.
#pragma once

#include <sys/stat.h>

#include <optional>

namespace tidewright {

/// Adds reading, writing and executing by the owner to what stands under `name` in the folder
/// `parent`. A link is left alone, and so are a file with another name, which may lie elsewhere,
/// and a place where something is mounted. A failure is ignored.
void giveOwnerAll(int parent, const char* name);

/// The permissions to give by these rules; absent where nothing is to be changed.
std::optional<mode_t> permissionsWithOwnerAll(const struct stat& status);

} // namespace tidewright
