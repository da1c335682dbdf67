#include "app/platform/FileManager.h"

#import "core/platform/macos/Conversion.h"

#import <AppKit/AppKit.h>

namespace tidewright {

void showInFileManager(const std::vector<URL>& locations) {
    @autoreleasepool {
        NSMutableArray<NSURL*>* urls = [NSMutableArray array];
        for (const URL& location : locations)
            if (NSURL* url = foundationURL(location))
                [urls addObject:url];
        [NSWorkspace.sharedWorkspace activateFileViewerSelectingURLs:urls];
    }
}

bool openLocation(const std::string& pathOrAddress) {
    @autoreleasepool {
        NSString* address = foundationString(pathOrAddress);
        NSURL* url = pathOrAddress.starts_with('/') ? foundationURL(URL(pathOrAddress))
                     : address != nil               ? [NSURL URLWithString:address]
                                                    : nil;
        return url.scheme != nil && [NSWorkspace.sharedWorkspace openURL:url];
    }
}

} // namespace tidewright
