#include "core/platform/StandardFolders.h"

#import "core/platform/macos/Conversion.h"

namespace tidewright {

URL temporaryDirectory() {
    @autoreleasepool {
        return URL(textFrom(NSTemporaryDirectory())).standardized(); // it ends with a slash
    }
}

} // namespace tidewright
