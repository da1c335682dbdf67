#include "core/platform/linux/ApplicationBundle.h"

#include "core/platform/FileContents.h"
#include "core/platform/linux/PropertyList.h"

namespace tidewright {

URL bundleInformation(const URL& bundle) { return bundle.appending("Contents/Info.plist"); }

std::optional<std::string> bundleIdentifier(const URL& bundle) {
    const auto bytes = readFile(bundleInformation(bundle), maximumPropertyListBytes);
    return bytes ? propertyListString(*bytes, "CFBundleIdentifier") : std::nullopt;
}

} // namespace tidewright
