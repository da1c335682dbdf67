#include "core/platform/JudgedFolder.h"

#include "core/platform/posix/FileIdentity.h"
#include "core/platform/posix/FolderOpening.h"
#include "core/support/Text.h"

#include <fcntl.h>

#include <cerrno>

namespace tidewright {

namespace {

/// The identities from a folder up to the root; absent when they can't be told. The root is above
/// itself; but a folder that is mounted on one of its own has above it what looks the same, too.
/// So as many steps are made as the path has components before anything is taken for the root.
std::optional<std::vector<FileIdentity>> lineageOf(const FileDescriptor& folder,
                                                   std::size_t components) {
    std::vector<FileIdentity> lineage;
    struct stat status = {};
    if (fstat(folder.get(), &status) != 0)
        return std::nullopt;
    lineage.push_back(identityOf(status));
    FileDescriptor above = openFolderHandle(folder.get(), "..");
    while (above && fstat(above.get(), &status) == 0) {
        if (lineage.size() > components && identityOf(status) == lineage.back())
            return lineage;
        lineage.push_back(identityOf(status));
        above = openFolderHandle(above.get(), "..");
    }
    return std::nullopt;
}

} // namespace

Result<std::shared_ptr<const JudgedFolder>, SystemError> JudgedFolder::open(const URL& path,
                                                                            Hold hold) {
    FileDescriptor folder = openFolderWithoutLinks(path.path());
    if (!folder)
        return Failure(SystemError{errno, "open", path.path()});
    auto lineage = lineageOf(folder, splitDroppingEmpty(path.path(), '/').size());
    if (!lineage)
        return Failure(SystemError{errno, "look at the folders above", path.path()});
    const std::shared_ptr<JudgedFolder> judged(new JudgedFolder);
    judged->m_path = path;
    judged->m_lineage = std::move(*lineage);
    judged->m_folder = std::move(folder);
    if (hold == Hold::byIdentity)
        judged->m_folder.reset();
    return judged;
}

Result<std::optional<FileIdentity>, SystemError> JudgedFolder::entry(
    const std::string& name) const {
    const auto looked = [&](int folder) -> Result<std::optional<FileIdentity>, SystemError> {
        struct stat status = {};
        if (fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0)
            return identityOf(status);
        if (errno == ENOENT || errno == ENAMETOOLONG)
            return std::nullopt;
        return Failure(SystemError{errno, "look at", m_path.appending(name).path()});
    };
    if (m_folder)
        return looked(m_folder.get());
    const auto folder = reopen();
    if (!folder)
        return Failure(folder.error());
    return looked(folder->get());
}

Result<FileDescriptor, SystemError> JudgedFolder::reopen() const {
    FileDescriptor folder = openFolderWithoutLinks(m_path.path());
    int error = folder ? ESTALE : errno;
    struct stat status = {};
    if (folder && fstat(folder.get(), &status) == 0 && identityOf(status) == identity())
        return folder;
    if (error == ENOTDIR || error == ELOOP)
        error = ESTALE;
    const bool isElsewhere = error == ESTALE || error == ENOENT;
    if (m_folder && isElsewhere && fstat(m_folder.get(), &status) == 0)
        error = status.st_nlink == 0 ? ENOENT : ESTALE; // removed, or moved away
    return Failure(SystemError{error, "open", m_path.path()});
}

} // namespace tidewright
