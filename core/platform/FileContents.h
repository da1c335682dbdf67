// Reading a whole file.
#pragma once

#include "core/support/Bytes.h"
#include "core/support/Result.h"
#include "core/support/URL.h"

#include <optional>
#include <string>

namespace tidewright {

/// The bytes of a regular file, links followed. Fails for anything else (a pipe is never waited
/// for) and, with EFBIG, for a file of more than `maxBytes`. Its access time stays as it was where
/// the system allows that.
Result<std::string, SystemError> readFile(const URL& url, Int64 maxBytes);

/// At most `bytes` bytes from the start of a regular file.
Result<std::string, SystemError> readFilePrefix(const URL& url, Int64 bytes);

/// A text file in UTF-8 without its byte order mark; absent when it can't be read, is larger than
/// any hand or tool writes such files (64 MB), or is not UTF-8.
std::optional<std::string> readText(const URL& url);

} // namespace tidewright
