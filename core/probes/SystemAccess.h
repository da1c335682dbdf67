// What the system lets the program read. macOS has no question for it, so it is found out by
// trying.
#pragma once

#include "core/platform/StandardFolders.h"
#include "core/support/Bytes.h"
#include "core/support/CancelToken.h"

#include <optional>

namespace tidewright::SystemAccess {

/// Where the user can grant Full Disk Access; the front end opens it.
inline constexpr std::string_view fullDiskAccessSettingsURL =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles";

/// Whether the protected places of a home folder can be read just now. Touches the disk each time.
bool hasFullDiskAccess(const URL& home = homeDirectory());

/// The allocated bytes of the Trash, the folder itself included; absent when it may not be listed.
/// Can take long; any thread. After a cancellation it is what was counted until then.
std::optional<Int64> trashSize(const URL& home, const CancelToken& cancel = CancelToken());

} // namespace tidewright::SystemAccess
