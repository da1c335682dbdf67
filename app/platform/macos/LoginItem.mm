#include "app/platform/LoginItem.h"

#import "core/platform/macos/Conversion.h"

#import <ServiceManagement/ServiceManagement.h>

namespace tidewright::LoginItem {

bool isEnabled() {
    @autoreleasepool {
        return SMAppService.mainAppService.status == SMAppServiceStatusEnabled;
    }
}

Result<void, std::string> setEnabled(bool enabled, const URL&) {
    @autoreleasepool {
        SMAppService* service = SMAppService.mainAppService;
        if (!enabled && (service.status == SMAppServiceStatusNotRegistered ||
                         service.status == SMAppServiceStatusNotFound))
            return {};
        NSError* error = nil;
        const bool isDone = enabled ? [service registerAndReturnError:&error]
                                    : [service unregisterAndReturnError:&error];
        if (isDone)
            return {};
        return Failure(textFrom(error.localizedDescription));
    }
}

} // namespace tidewright::LoginItem
