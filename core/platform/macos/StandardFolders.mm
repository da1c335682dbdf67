#include "core/platform/StandardFolders.h"

#import "core/platform/macos/Conversion.h"

namespace tidewright {

URL temporaryDirectory() {
    @autoreleasepool {
        return URL(textFrom(NSTemporaryDirectory())).standardized(); // it ends with a slash
    }
}

URL userDataDirectory(const URL& home) { return home.appending("Library/Application Support"); }

URL userConfigDirectory(const URL& home) { return home.appending("Library/Preferences"); }

URL auditLogDirectory(const URL& home) { return home.appending("Library/Logs/Tidewright"); }

} // namespace tidewright
