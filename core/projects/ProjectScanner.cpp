#include "core/projects/ProjectScanner.h"

namespace tidewright {

ProjectScanner::Result ProjectScanner::scan(const CancelToken&) const { return {}; }

} // namespace tidewright
