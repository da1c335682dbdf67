#include "core/platform/Applications.h"

#include "core/platform/linux/ApplicationBundle.h"
#include "core/platform/linux/ApplicationSearch.h"
#include "core/support/Text.h"

namespace tidewright {

std::optional<InstalledApplication> applicationWithBundleIdentifier(const std::string& identifier,
                                                                    const URL& home) {
    static ApplicationSearch search; // a scan asks hundreds of times
    return search.find(identifier, standardApplicationFolders(home, processEnvironment()));
}

ApplicationFacts applicationFacts(const URL& bundle) {
    BundleFacts known = bundleFacts(bundle);
    const auto file = fileInfo(bundle, Links::dontFollow);
    return {.displayName = known.name.value_or(repairedUTF8(bundle.lastPathComponent())),
            .bundleIdentifier = std::move(known.identifier),
            .lastUsed = std::nullopt,
            .addedOn = file ? file->created : std::nullopt};
}

} // namespace tidewright
