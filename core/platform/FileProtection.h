// Whether the system itself keeps files of the user from programs.
#pragma once

namespace tidewright {

/// Whether some of the user's own files can be read only by programs that the user has allowed to:
/// so it is on macOS, where that is called Full Disk Access.
bool protectsUserFiles();

} // namespace tidewright
