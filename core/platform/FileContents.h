// Reading a whole file.
#pragma once

#include "core/support/Bytes.h"
#include "core/support/Result.h"
#include "core/support/URL.h"

#include <string>

namespace tidewright {

/// The bytes of a regular file, links followed. Fails for anything else (a pipe is never waited
/// for) and, with EFBIG, for a file of more than `maxBytes`. Its access time stays as it was where
/// the system allows that.
Result<std::string, SystemError> readFile(const URL& url, Int64 maxBytes);

} // namespace tidewright
