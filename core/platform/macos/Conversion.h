// Between our values and those of Foundation. For Objective-C++ only; whoever calls these has an
// autorelease pool of its own around the call.
#pragma once

#include "core/support/Date.h"
#include "core/support/Result.h"
#include "core/support/URL.h"

#import <Foundation/Foundation.h>

namespace tidewright {

/// Without a look at the disk; nil for an empty path.
NSURL* foundationURL(const URL& url);

/// `url` is a file's and not nil.
URL urlFrom(NSURL* url);

/// Nil when the text is not UTF-8.
NSString* foundationString(const std::string& text);

/// Empty for nil.
std::string textFrom(NSString* text);

Date dateFrom(NSDate* date);

/// With the code of the system call underneath, EIO where Foundation names none.
SystemError systemErrorFrom(NSError* error, std::string operation, const URL& url);

} // namespace tidewright
