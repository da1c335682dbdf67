#include "app/platform/WakeUp.h"

#import <AppKit/AppKit.h>

namespace tidewright {

void onWakeUp(QObject* context, std::function<void()> function) {
    @autoreleasepool {
        NSNotificationCenter* center = NSWorkspace.sharedWorkspace.notificationCenter;
        id observer = [center addObserverForName:NSWorkspaceDidWakeNotification
                                          object:nil
                                           queue:NSOperationQueue.mainQueue
                                      usingBlock:^(NSNotification*) {
                                          function();
                                      }];
        QObject::connect(context, &QObject::destroyed,
                         [center, observer] { [center removeObserver:observer]; });
    }
}

} // namespace tidewright
