#include "core/platform/posix/OwnerPermissions.h"

#include "core/platform/linux/ResolvingOpening.h"

#include <fmt/format.h>

#include <fcntl.h>

namespace tidewright {

void giveOwnerAll(int parent, const char* name) {
    const FileDescriptor entry = openOnSameMount(parent, name, O_PATH);
    struct stat status = {};
    if (!entry || fstat(entry.get(), &status) != 0)
        return;
    // Such a handle takes no fchmod, but has a path that leads to nothing else.
    if (const auto permissions = permissionsWithOwnerAll(status))
        chmod(fmt::format("/proc/self/fd/{}", entry.get()).c_str(), *permissions);
}

} // namespace tidewright
