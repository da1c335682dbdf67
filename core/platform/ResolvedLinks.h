// Where a path really leads.
#pragma once

#include "core/support/Result.h"
#include "core/support/URL.h"

namespace tidewright {

/// The location with every link in it replaced by what it leads to. From the first component on
/// that does not exist, or lies in something that is no folder, the path is taken as text. Fails
/// where nobody can tell: links in a circle, a folder that may not be searched. The path may be of
/// any length; it is taken as absolute.
Result<URL, SystemError> resolvedLinks(const URL& url);

} // namespace tidewright
