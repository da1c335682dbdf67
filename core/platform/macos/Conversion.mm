#import "core/platform/macos/Conversion.h"

#include <cerrno>

namespace tidewright {

NSURL* foundationURL(const URL& url) {
    if (url.path().empty())
        return nil;
    return [NSURL fileURLWithFileSystemRepresentation:url.path().c_str()
                                          isDirectory:NO
                                        relativeToURL:nil];
}

URL urlFrom(NSURL* url) { return URL(url.fileSystemRepresentation); }

NSString* foundationString(const std::string& text) {
    return [NSString stringWithUTF8String:text.c_str()];
}

std::string textFrom(NSString* text) {
    const char* bytes = text.UTF8String;
    return bytes == nullptr ? std::string() : std::string(bytes);
}

Date dateFrom(NSDate* date) {
    const std::chrono::duration<double> sinceEpoch(date.timeIntervalSince1970);
    return Date(std::chrono::round<Date::duration>(sinceEpoch));
}

SystemError systemErrorFrom(NSError* error, std::string operation, const URL& url) {
    int code = EIO;
    for (NSError* cause = error; cause != nil; cause = cause.userInfo[NSUnderlyingErrorKey]) {
        if ([cause.domain isEqual:NSPOSIXErrorDomain])
            code = static_cast<int>(cause.code);
    }
    return {code, std::move(operation), url.path()};
}

} // namespace tidewright
