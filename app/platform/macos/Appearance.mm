#include "app/platform/Appearance.h"

#import <AppKit/AppKit.h>

#include <memory>

namespace tidewright {

namespace {

/// The system keeps this at what is shown now, also where it changes with the time of day.
bool isDark() {
    NSString* style = [NSUserDefaults.standardUserDefaults stringForKey:@"AppleInterfaceStyle"];
    return [style isEqualToString:@"Dark"];
}

std::optional<AccentColor> accent() {
    NSColor* color = [NSColor.controlAccentColor colorUsingColorSpace:NSColorSpace.sRGBColorSpace];
    if (color == nil)
        return std::nullopt;
    return AccentColor{color.redComponent, color.greenComponent, color.blueComponent};
}

Appearance currentAppearance() {
    return {isDark(), accent(), NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion};
}

void observe(QObject* context, NSNotificationCenter* center, NSString* name, void (^block)()) {
    id observer = [center addObserverForName:name
                                      object:nil
                                       queue:NSOperationQueue.mainQueue
                                  usingBlock:^(NSNotification*) {
                                      block();
                                  }];
    QObject::connect(context, &QObject::destroyed,
                     [center, observer] { [center removeObserver:observer]; });
}

} // namespace

void followAppearance(QObject* context, std::function<void(const Appearance&)> function) {
    @autoreleasepool {
        const auto last = std::make_shared<std::optional<Appearance>>();
        const auto tell = [last, function = std::move(function)] {
            @autoreleasepool {
                const Appearance current = currentAppearance();
                if (*last == current)
                    return;
                *last = current;
                function(current);
            }
        };
        void (^block)() = ^{
            tell();
        };
        observe(context, NSDistributedNotificationCenter.defaultCenter,
                @"AppleInterfaceThemeChangedNotification", block);
        observe(context, NSNotificationCenter.defaultCenter, NSSystemColorsDidChangeNotification,
                block);
        observe(context, NSWorkspace.sharedWorkspace.notificationCenter,
                NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification, block);
        QMetaObject::invokeMethod(context, tell, Qt::QueuedConnection);
    }
}

} // namespace tidewright
