#include "core/platform/RunningApplications.h"

#import "core/platform/macos/Conversion.h"

#import <AppKit/AppKit.h>

namespace tidewright {

std::set<std::string> runningBundleIdentifiers() {
    @autoreleasepool {
        std::set<std::string> identifiers;
        for (NSRunningApplication* application in NSWorkspace.sharedWorkspace.runningApplications) {
            if (application.bundleIdentifier != nil)
                identifiers.insert(textFrom(application.bundleIdentifier));
        }
        return identifiers;
    }
}

} // namespace tidewright
