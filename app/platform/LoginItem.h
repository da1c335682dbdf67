// Starting the program when the user logs in.
#pragma once

#include "core/support/Result.h"
#include "core/support/URL.h"

namespace tidewright::LoginItem {

/// Whether the program is started at login. Touches the disk.
bool isEnabled();

/// The error is a sentence for the user. `program` is the absolute path of what is to be started,
/// which macOS knows by itself.
Result<void, std::string> setEnabled(bool enabled, const URL& program);

} // namespace tidewright::LoginItem
