#include "core/platform/Trash.h"

#include "core/platform/StandardFolders.h"
#include "core/platform/linux/TrashFolder.h"
#include "core/platform/posix/FileIdentity.h"
#include "core/platform/posix/StandingItem.h"

#include <fcntl.h>

#include <cerrno>

namespace tidewright {

namespace {

using Kind = FileActionError::Kind;

constexpr const char* operation = "move to the Trash";

/// A path inside the disk without the slash at its start.
std::string pathOnDisk(const MountPoint& disk, const URL& item) {
    const std::string& root = disk.path.path();
    return item.path().substr(root == "/" ? 1 : root.size() + 1);
}

/// Tries one trash folder after the other until one lies on the item's own disk. `folder` is the
/// path of the folder that really holds the item.
Result<void, int> moveToAnyTrash(const TrashableItem& item, const URL& folder) {
    const URL path = folder.appending(item.name);
    const auto ofHome = TrashFolder::ofHome(userDataDirectory(homeDirectory()).appending("Trash"));
    if (ofHome) {
        const auto taken = ofHome->take(item, path.path());
        if (taken || taken.error() != EXDEV)
            return taken;
    }
    const auto disk = mountPointOf(item.folder, folder);
    if (!disk)
        return Failure(disk.error().code);
    if (const auto shared = TrashFolder::sharedAt(*disk)) {
        const auto taken = shared->take(item, pathOnDisk(*disk, path));
        if (taken || taken.error() != EXDEV)
            return taken;
    }
    const auto own = TrashFolder::ownAt(*disk);
    if (!own)
        return Failure(ofHome ? own.error() : ofHome.error());
    return own->take(item, pathOnDisk(*disk, path));
}

/// The item itself, if it is still what was judged. Holding it open keeps its identity from being
/// given to anything else.
FileDescriptor handleOf(const ApprovedPath& item, const FileDescriptor& folder) {
    FileDescriptor handle(
        openat(folder.get(), item.name().c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat status = {};
    if (!handle || fstat(handle.get(), &status) != 0)
        return {};
    if (item.item() == identityOf(status))
        return handle;
    errno = ESTALE;
    return {};
}

Kind kindOf(int error) {
    if (error == ESTALE)
        return Kind::replaced;
    return error == ENOENT ? Kind::system : Kind::notTrashed;
}

} // namespace

Result<void, FileActionError> moveToTrash(const ApprovedPath& item) {
    const auto failure = [&](int error) {
        return Failure(FileActionError{kindOf(error), {error, operation, item.url().path()}});
    };
    const auto standing = standingItem(item);
    if (!standing)
        return Failure(standing.error());
    if (!*standing)
        return failure(ENOENT);
    const FileDescriptor& folder = (*standing)->folder;
    const FileDescriptor handle = handleOf(item, folder);
    if (!handle)
        return failure(errno);

    // A disk would travel into the Trash with the folder in which it is mounted, and be emptied
    // with it.
    const URL& folderPath = (*item.folder())->path();
    const auto mounted = mountInside(folderPath.appending(item.name()));
    if (!mounted)
        return Failure(FileActionError{Kind::system, mounted.error()});
    if (*mounted)
        return Failure(FileActionError{Kind::mounted, {EBUSY, operation, (*mounted)->path()}});

    const auto moved = moveToAnyTrash({folder.get(), handle.get(), item.name()}, folderPath);
    if (!moved)
        return failure(moved.error());
    return {};
}

} // namespace tidewright
