// Application bundles: folders "Name.app" with their facts in "Contents/Info.plist".
#pragma once

#include "core/support/URL.h"

#include <optional>
#include <string>

namespace tidewright {

/// The file with a bundle's facts.
URL bundleInformation(const URL& bundle);

/// What a bundle's facts say that its identifier is.
std::optional<std::string> bundleIdentifier(const URL& bundle);

} // namespace tidewright
