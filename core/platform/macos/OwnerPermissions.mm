#include "core/platform/posix/OwnerPermissions.h"

#include <fcntl.h>

namespace tidewright {

void giveOwnerAll(int parent, const char* name) {
    struct stat outside = {};
    struct stat status = {};
    if (fstat(parent, &outside) != 0 || fstatat(parent, name, &status, AT_SYMLINK_NOFOLLOW) != 0 ||
        status.st_dev != outside.st_dev)
        return;
    if (const auto permissions = permissionsWithOwnerAll(status))
        fchmodat(parent, name, *permissions, AT_SYMLINK_NOFOLLOW);
}

} // namespace tidewright
