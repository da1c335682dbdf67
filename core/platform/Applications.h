// Installed applications.
#pragma once

#include "core/support/URL.h"

#include <optional>
#include <string>

namespace tidewright {

struct InstalledApplication {
    URL url;                 ///< the bundle, or on Linux also the desktop entry or Flatpak folder
    std::string displayName; ///< as the system shows it; may end in ".app"
};

/// The application with this bundle identifier, absent when none is installed. `home` is whose
/// applications count besides those of all users.
std::optional<InstalledApplication> applicationWithBundleIdentifier(const std::string& identifier,
                                                                    const URL& home);

} // namespace tidewright
