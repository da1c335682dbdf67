#include "app/platform/Notifications.h"

#import "core/platform/macos/Conversion.h"

#import <UserNotifications/UserNotifications.h>

namespace tidewright {

namespace {

UNNotificationRequest* requestOf(const Notification& notification) {
    UNMutableNotificationContent* content = [[UNMutableNotificationContent alloc] init];
    content.title = foundationString(notification.title);
    content.body = foundationString(notification.body);
    content.sound = UNNotificationSound.defaultSound;
    return [UNNotificationRequest requestWithIdentifier:foundationString(notification.id)
                                                content:content
                                                trigger:nil];
}

} // namespace

void askToPostNotifications() {
    @autoreleasepool {
        if (NSBundle.mainBundle.bundleIdentifier == nil)
            return;
        [UNUserNotificationCenter.currentNotificationCenter
            requestAuthorizationWithOptions:UNAuthorizationOptionAlert | UNAuthorizationOptionSound
                          completionHandler:^(BOOL, NSError*){
                          }];
    }
}

void postNotification(const Notification& notification, std::function<void(bool)> done) {
    @autoreleasepool {
        const auto tell = [done = std::move(done)](bool isTaken) {
            dispatch_async(dispatch_get_main_queue(), ^{
                done(isTaken);
            });
        };
        // A program outside of a bundle has no notification centre: to ask for it would end it.
        if (NSBundle.mainBundle.bundleIdentifier == nil)
            return tell(false);
        [UNUserNotificationCenter.currentNotificationCenter
            addNotificationRequest:requestOf(notification)
             withCompletionHandler:^(NSError* error) {
                 tell(error == nil);
             }];
    }
}

} // namespace tidewright
