// Asking the user for folders with the system's own dialog.
#pragma once

#include "core/support/Bytes.h"
#include "core/support/URL.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tidewright {

struct FolderQuestion {
    std::string title;
    URL start;           ///< the folder that is shown first
    Int64 x11Window = 0; ///< the window that asks, where the desktop is X11; else 0
};

/// What the user has picked, nothing where the question was cancelled; absent where this system has
/// no such dialog.
using FolderAnswer = std::function<void(const std::optional<std::vector<URL>>&)>;

/// Asks for any number of folders that exist. Does not wait: `answer` is called once, later, on the
/// main thread, unless the program ends before. Main thread.
void pickFolders(const FolderQuestion& question, FolderAnswer answer);

} // namespace tidewright
