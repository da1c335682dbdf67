#include "app/platform/FolderPicker.h"

#import "core/platform/macos/Conversion.h"

#import <AppKit/AppKit.h>

namespace tidewright {

void pickFolders(const FolderQuestion& question, FolderAnswer answer) {
    @autoreleasepool {
        NSOpenPanel* panel = [NSOpenPanel openPanel];
        panel.title = foundationString(question.title);
        panel.canChooseFiles = NO;
        panel.canChooseDirectories = YES;
        panel.allowsMultipleSelection = YES;
        panel.directoryURL = foundationURL(question.start);
        // The panel's loop is one of its own, which is not to begin within the caller's event.
        dispatch_async(dispatch_get_main_queue(), ^{
            std::vector<URL> folders;
            if ([panel runModal] == NSModalResponseOK)
                for (NSURL* url in panel.URLs)
                    folders.push_back(urlFrom(url));
            answer(folders);
        });
    }
}

} // namespace tidewright
