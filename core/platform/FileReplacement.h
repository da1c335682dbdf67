// Writing a whole file in the place of another, so that nothing is lost whatever happens meanwhile.
#pragma once

#include "core/support/Result.h"
#include "core/support/URL.h"

#include <string_view>

namespace tidewright {

/// Makes the folder with all above it that are missing; only its user may enter what was made.
Result<void, SystemError> makeFolder(const URL& url);

/// Puts a file of these bytes at the location, in a folder that is made where it is missing. The
/// bytes are on the disk before they get the name: a failure, a crash and a kill at any moment
/// leave the earlier file whole or the new one. A link stays, and what it leads to is replaced. The
/// new file has the permissions of the earlier one and, as far as this process may give it away,
/// its owner; without an earlier one only its user may read it. A kill can leave a file behind that
/// is named like this one with a dot and six letters behind it.
Result<void, SystemError> replaceFile(const URL& url, std::string_view contents);

/// Gives what a link at the location leads to, or else what is there, another name: its own with
/// `suffix` behind it, or "-2", "-3" and so on behind that. Nothing is overwritten.
Result<void, SystemError> putFileAside(const URL& url, std::string_view suffix);

} // namespace tidewright
