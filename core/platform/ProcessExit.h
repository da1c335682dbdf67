// A descriptor that becomes readable when a child process has ended.
#pragma once

#include "core/support/Result.h"

namespace tidewright {

/// Opens such a descriptor for a child of this process that has not been waited for; the caller
/// closes it. The child may have ended already. Not inherited by programs that are started later.
Result<int, SystemError> openProcessExit(int processID);

} // namespace tidewright
