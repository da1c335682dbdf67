// What the macOS sources use of the Foundation framework, so that tools/check-macos can compile
// them without an SDK. Written from the public documentation, and nothing but declarations: what is
// deprecated for macOS 13 is left out on purpose, so that its use does not compile.
#pragma once

#import <objc/NSObjCRuntime.h>
#import <objc/NSObject.h>

#define FOUNDATION_EXPORT extern "C"
#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define NS_RETURNS_INNER_POINTER __attribute__((objc_returns_inner_pointer))

@class NSDate, NSString, NSURL;

typedef double NSTimeInterval;
typedef NSString* NSErrorDomain;
typedef NSString* NSErrorUserInfoKey;
typedef NSString* NSURLResourceKey;

NS_ASSUME_NONNULL_BEGIN

@interface NSArray<__covariant ObjectType> : NSObject
@property (readonly) NSUInteger count;
+ (instancetype)arrayWithObjects:(const ObjectType _Nonnull __unsafe_unretained[])objects
                           count:(NSUInteger)count;
- (NSUInteger)countByEnumeratingWithState:(struct NSFastEnumerationState*)state
                                  objects:(id _Nullable __unsafe_unretained[])buffer
                                    count:(NSUInteger)count;
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject
- (nullable ObjectType)objectForKeyedSubscript:(KeyType)key;
@end

@interface NSString : NSObject
@property (nullable, readonly) const char* UTF8String NS_RETURNS_INNER_POINTER;
+ (nullable instancetype)stringWithUTF8String:(const char*)bytes;
@end

@interface NSNumber : NSObject
@property (readonly) BOOL boolValue;
@property (readonly) long long longLongValue;
@end

@interface NSDate : NSObject
@property (readonly) NSTimeInterval timeIntervalSince1970;
@end

FOUNDATION_EXPORT NSErrorDomain const NSPOSIXErrorDomain;
FOUNDATION_EXPORT NSErrorUserInfoKey const NSUnderlyingErrorKey;

@interface NSError : NSObject
@property (readonly, copy) NSErrorDomain domain;
@property (readonly) NSInteger code;
@property (readonly, copy) NSDictionary<NSErrorUserInfoKey, id>* userInfo;
@end

FOUNDATION_EXPORT NSURLResourceKey const NSURLAddedToDirectoryDateKey;
FOUNDATION_EXPORT NSURLResourceKey const NSURLIsPackageKey;
FOUNDATION_EXPORT NSURLResourceKey const NSURLVolumeAvailableCapacityForImportantUsageKey;
FOUNDATION_EXPORT NSURLResourceKey const NSURLVolumeAvailableCapacityKey;
FOUNDATION_EXPORT NSURLResourceKey const NSURLVolumeTotalCapacityKey;

@interface NSURL : NSObject
@property (nullable, readonly, copy) NSString* path;
@property (readonly) const char* fileSystemRepresentation NS_RETURNS_INNER_POINTER;
+ (NSURL*)fileURLWithFileSystemRepresentation:(const char*)path
                                  isDirectory:(BOOL)isDirectory
                                relativeToURL:(nullable NSURL*)base;
- (nullable NSDictionary<NSURLResourceKey, id>*)
    resourceValuesForKeys:(NSArray<NSURLResourceKey>*)keys
                    error:(NSError* _Nullable* _Nullable)error;
@end

@interface NSBundle : NSObject
@property (nullable, readonly, copy) NSString* bundleIdentifier;
- (nullable instancetype)initWithURL:(NSURL*)url;
@end

@interface NSFileManager : NSObject
@property (class, readonly, strong) NSFileManager* defaultManager;
- (NSString*)displayNameAtPath:(NSString*)path;
- (BOOL)trashItemAtURL:(NSURL*)url
      resultingItemURL:(NSURL* _Nullable* _Nullable)resultingURL
                 error:(NSError* _Nullable* _Nullable)error;
@end

FOUNDATION_EXPORT NSString* NSHomeDirectory(void);
FOUNDATION_EXPORT NSString* NSTemporaryDirectory(void);

NS_ASSUME_NONNULL_END
