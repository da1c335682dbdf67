#include "core/platform/Applications.h"

#import "core/platform/macos/Conversion.h"

#import <AppKit/AppKit.h>

namespace tidewright {

// Launch Services knows the applications of this user and of all, whatever folder they are in.
std::optional<InstalledApplication> applicationWithBundleIdentifier(const std::string& identifier,
                                                                    const URL&) {
    @autoreleasepool {
        NSString* name = foundationString(identifier);
        if (name == nil)
            return std::nullopt;
        NSURL* bundle = [NSWorkspace.sharedWorkspace URLForApplicationWithBundleIdentifier:name];
        if (bundle.path == nil)
            return std::nullopt;
        return InstalledApplication{
            .url = urlFrom(bundle),
            .displayName = textFrom([NSFileManager.defaultManager displayNameAtPath:bundle.path])};
    }
}

} // namespace tidewright
