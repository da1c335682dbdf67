// Where the system keeps things for this user, and the program's own name in such places.
#pragma once

#include "core/support/URL.h"

#include <string_view>
#include <vector>

namespace tidewright {

/// The bundle identifier of the program.
inline constexpr std::string_view ownBundleIdentifier = "com.tidewright.app";

/// The user's home folder: `$HOME`, else the one of the user database.
URL homeDirectory();

/// The temporary folder of this user; on Linux `$TMPDIR`, else "/tmp".
URL temporaryDirectory();

/// Where programs keep files of the user with this home; on Linux `$XDG_DATA_HOME`.
URL userDataDirectory(const URL& home);

/// Where programs keep the settings of the user with this home; on Linux `$XDG_CONFIG_HOME`.
URL userConfigDirectory(const URL& home);

/// Where the audit logs of the user with this home are kept; it need not exist. On Linux that
/// follows
/// `$XDG_STATE_HOME`.
URL auditLogDirectory(const URL& home);

/// The two folders that hold applications: of all users, and of the one with this home.
std::vector<URL> applicationFolders(const URL& home);

} // namespace tidewright
