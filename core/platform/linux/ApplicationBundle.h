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

struct BundleFacts {
    std::optional<std::string> identifier;
    std::optional<std::string> name; ///< for people; not empty
};

/// What a bundle says of itself, in one reading.
BundleFacts bundleFacts(const URL& bundle);

} // namespace tidewright
