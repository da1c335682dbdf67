#include "core/platform/Applications.h"

#include "core/platform/linux/ApplicationSearch.h"

namespace tidewright {

std::optional<InstalledApplication> applicationWithBundleIdentifier(const std::string& identifier,
                                                                    const URL& home) {
    static ApplicationSearch search; // a scan asks hundreds of times
    return search.find(identifier, standardApplicationFolders(home, processEnvironment()));
}

} // namespace tidewright
