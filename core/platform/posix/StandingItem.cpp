#include "core/platform/posix/StandingItem.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace tidewright {

Result<FileDescriptor, FileActionError> folderOfStanding(const ApprovedPath& item,
                                                         const std::string& operation) {
    using Kind = FileActionError::Kind;
    const auto failure = [&](Kind kind, int code) {
        return Failure(FileActionError{kind, {code, operation, item.url().path()}});
    };
    if (!item.folder())
        return Failure(FileActionError{Kind::system, item.folder().error()});
    auto folder = (*item.folder())->reopen();
    if (!folder && folder.error().code == ESTALE)
        return failure(Kind::replaced, ESTALE);
    if (!folder)
        return Failure(FileActionError{Kind::system, folder.error()});

    struct stat status = {};
    if (!item.item())
        return failure(Kind::system, ENOENT);
    if (fstatat(folder->get(), item.name().c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return failure(Kind::system, errno);
    const FileIdentity standing{static_cast<std::uint64_t>(status.st_dev), status.st_ino};
    if (standing != *item.item())
        return failure(Kind::replaced, ESTALE);
    return std::move(*folder);
}

} // namespace tidewright
