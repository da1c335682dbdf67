// A home folder of the size that scans are measured on.
#pragma once

#include "core/support/URL.h"

namespace tidewright::bench {

/// 1,000,000 files in 100,000 folders, 300 projects and what gives 3,000 items. Made once, in a
/// folder under /var/tmp that is removed at the program's end; all files are empty.
const URL& bigHome();

} // namespace tidewright::bench
