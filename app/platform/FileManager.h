// Showing locations in the system's file manager.
#pragma once

#include "core/support/URL.h"

#include <string>
#include <vector>

namespace tidewright {

/// Brings the file manager to the front with these locations selected, those of one folder in one
/// window. Nothing is reported. Main thread; doesn't wait.
void showInFileManager(const std::vector<URL>& locations);

/// Opens a folder, a file, or an address such as that of a page of the system's settings, with what
/// the user has chosen for it. False where nothing could be started. Main thread.
bool openLocation(const std::string& pathOrAddress);

} // namespace tidewright
