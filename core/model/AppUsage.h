// An installed application, its size and when it was last used.
#pragma once

#include "core/support/Bytes.h"
#include "core/support/Fields.h"

namespace tidewright {

struct AppUsage {
    URL url;          ///< the application bundle, its identity
    std::string name; ///< display name without ".app"
    std::optional<std::string> bundleIdentifier;
    std::optional<Date> lastUsed;
    std::optional<Date> addedOn;
    Int64 sizeBytes = 0;

    /// Whole days since the last use, or since it was added where no use is known; absent where
    /// neither is.
    std::optional<int> idleDays(Date now) const;

    bool operator==(const AppUsage&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("url", &AppUsage::url),
                          field("name", &AppUsage::name),
                          field("bundleIdentifier", &AppUsage::bundleIdentifier),
                          field("lastUsed", &AppUsage::lastUsed),
                          field("addedOn", &AppUsage::addedOn),
                          field("sizeBytes", &AppUsage::sizeBytes)};
    }
};

} // namespace tidewright
