#include "core/platform/Applications.h"

#include "core/platform/FileInfo.h"
#import "core/platform/macos/Conversion.h"

#import <AppKit/AppKit.h>
#import <CoreServices/CoreServices.h>

namespace tidewright {

namespace {

/// Of a location with this path; nil for none.
std::string displayName(NSString* path) {
    if (path == nil)
        return {};
    return textFrom([NSFileManager.defaultManager displayNameAtPath:path]);
}

std::optional<std::string> identifierOfBundle(NSURL* url) {
    NSString* identifier = [[NSBundle alloc] initWithURL:url].bundleIdentifier;
    return identifier == nil ? std::nullopt : std::optional(textFrom(identifier));
}

/// A date in the record that the file-search index has of a location.
std::optional<Date> indexedDate(MDItemRef record, CFStringRef attribute) {
    id value = (__bridge_transfer id)MDItemCopyAttribute(record, attribute);
    if (![value isKindOfClass:NSDate.class])
        return std::nullopt;
    return dateFrom(value);
}

} // namespace

// Launch Services knows the applications of this user and of all, whatever folder they are in.
std::optional<InstalledApplication> applicationWithBundleIdentifier(const std::string& identifier,
                                                                    const URL&) {
    @autoreleasepool {
        NSString* name = foundationString(identifier);
        if (name == nil)
            return std::nullopt;
        NSURL* bundle = [NSWorkspace.sharedWorkspace URLForApplicationWithBundleIdentifier:name];
        if (bundle.path == nil)
            return std::nullopt;
        return InstalledApplication{.url = urlFrom(bundle),
                                    .displayName = displayName(bundle.path)};
    }
}

ApplicationFacts applicationFacts(const URL& bundle) {
    @autoreleasepool {
        NSURL* url = foundationURL(bundle);
        if (url == nil)
            return {};
        ApplicationFacts facts;
        facts.displayName = displayName(url.path);
        facts.bundleIdentifier = identifierOfBundle(url);
        MDItemRef record = MDItemCreateWithURL(kCFAllocatorDefault, (__bridge CFURLRef)url);
        if (record != nullptr) {
            facts.lastUsed = indexedDate(record, kMDItemLastUsedDate);
            facts.addedOn = indexedDate(record, kMDItemDateAdded);
            CFRelease(record);
        }
        if (!facts.addedOn)
            facts.addedOn = dateAddedToFolder(bundle);
        return facts;
    }
}

} // namespace tidewright
