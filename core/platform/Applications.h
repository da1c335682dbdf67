// Installed applications.
#pragma once

#include "core/support/Date.h"
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

/// What the system knows of one application.
struct ApplicationFacts {
    std::string displayName; ///< as the system shows it; may end in ".app"
    std::optional<std::string> bundleIdentifier;
    std::optional<Date> lastUsed; ///< never on Linux, which does not keep it
    std::optional<Date> addedOn;  ///< when it came into its folder; on Linux its birth time
};

/// Reads what can be read of a bundle, or of whatever has the name of one; what is not known is
/// absent. A link's dates are its own. Any thread.
ApplicationFacts applicationFacts(const URL& bundle);

} // namespace tidewright
