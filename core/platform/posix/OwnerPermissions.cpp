#include "core/platform/posix/OwnerPermissions.h"

namespace tidewright {

std::optional<mode_t> permissionsWithOwnerAll(const struct stat& status) {
    if (S_ISLNK(status.st_mode) || (!S_ISDIR(status.st_mode) && status.st_nlink > 1))
        return std::nullopt;
    constexpr mode_t permissions = S_ISUID | S_ISGID | S_ISVTX | S_IRWXU | S_IRWXG | S_IRWXO;
    const mode_t before = status.st_mode & permissions;
    const mode_t after = before | S_IRWXU;
    return after == before ? std::nullopt : std::optional(after);
}

} // namespace tidewright
