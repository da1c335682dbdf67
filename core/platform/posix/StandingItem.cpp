#include "core/platform/posix/StandingItem.h"

#include "core/platform/posix/FileIdentity.h"

#include <fcntl.h>

#include <cerrno>

namespace tidewright {

namespace {

using Kind = FileActionError::Kind;

bool isAbsence(int error) { return error == ENOENT || error == ENOTDIR; }

} // namespace

Result<std::optional<StandingItem>, FileActionError> standingItem(const ApprovedPath& item) {
    const std::string& path = item.url().path();
    const auto replaced = [&] {
        return Failure(FileActionError{Kind::replaced, {ESTALE, "find", path}});
    };
    if (!item.folder() && fileInfo(item.url(), Links::dontFollow))
        return replaced(); // it came there since
    auto folder = item.folder() ? (*item.folder())->reopen() : Failure(item.folder().error());
    if (!folder && isAbsence(folder.error().code))
        return std::nullopt;
    if (!folder && folder.error().code == ESTALE)
        return replaced();
    if (!folder)
        return Failure(FileActionError{Kind::system, folder.error()});

    struct stat status = {};
    if (fstatat(folder->get(), item.name().c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        if (isAbsence(errno))
            return std::nullopt;
        return Failure(FileActionError{Kind::system, {errno, "look at", path}});
    }
    if (item.item() != identityOf(status))
        return replaced();
    return StandingItem{std::move(*folder), item.name(), identityOf(status),
                        S_ISDIR(status.st_mode)};
}

} // namespace tidewright
