#include "core/platform/linux/ApplicationBundle.h"

#include "core/platform/FileContents.h"
#include "core/platform/linux/PropertyList.h"
#include "core/support/Text.h"

namespace tidewright {

namespace {

constexpr std::string_view identifierKey = "CFBundleIdentifier";

/// The one for people comes first: the other may be shortened for a menu.
std::optional<std::string> bundleName(std::string_view propertyList) {
    for (const char* key : {"CFBundleDisplayName", "CFBundleName"})
        if (auto name = propertyListString(propertyList, key); name && !name->empty())
            return repairedUTF8(*name);
    return std::nullopt;
}

} // namespace

URL bundleInformation(const URL& bundle) { return bundle.appending("Contents/Info.plist"); }

std::optional<std::string> bundleIdentifier(const URL& bundle) {
    const auto bytes = readFile(bundleInformation(bundle), maximumPropertyListBytes);
    return bytes ? propertyListString(*bytes, identifierKey) : std::nullopt;
}

BundleFacts bundleFacts(const URL& bundle) {
    const auto bytes = readFile(bundleInformation(bundle), maximumPropertyListBytes);
    if (!bytes)
        return {};
    return {.identifier = propertyListString(*bytes, identifierKey), .name = bundleName(*bytes)};
}

} // namespace tidewright
