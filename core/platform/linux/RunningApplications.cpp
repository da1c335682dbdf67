#include "core/platform/RunningApplications.h"

#include "core/platform/linux/RunningApplicationSearch.h"

#include <unistd.h>

namespace tidewright {

std::set<std::string> runningBundleIdentifiers() {
    return findRunningApplications(URL("/proc"), getuid());
}

} // namespace tidewright
