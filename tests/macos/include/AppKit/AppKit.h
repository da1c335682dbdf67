// What the macOS sources use of the AppKit framework, so that tools/check-macos can compile them
// without an SDK. Written from the public documentation, and nothing but declarations: what is
// deprecated for macOS 13 is left out on purpose, so that its use does not compile.
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSRunningApplication : NSObject
@property (nullable, readonly, copy) NSString* bundleIdentifier;
@end

@interface NSWorkspace : NSObject
@property (class, readonly, strong) NSWorkspace* sharedWorkspace;
@property (readonly, copy) NSArray<NSRunningApplication*>* runningApplications;
- (nullable NSURL*)URLForApplicationWithBundleIdentifier:(NSString*)identifier;
@end

NS_ASSUME_NONNULL_END
