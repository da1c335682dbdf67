// One trash folder of the freedesktop.org Trash specification, version 1.0: `files` with what was
// moved there, `info` with where each came from and when, and `directorysizes`, a cache.
#pragma once

#include "core/platform/linux/Mounts.h"
#include "core/platform/posix/FileDescriptor.h"
#include "core/support/URL.h"

#include <cstddef>
#include <string>

namespace tidewright {

/// Something to be moved.
struct TrashableItem {
    int folder = -1; ///< borrowed; the folder that holds it
    int handle = -1; ///< borrowed; the item itself, a link as a link
    std::string name;
};

/// Movable; closes its folders. What is missing of the folder is made, for its user alone. Errors
/// are those of the system (`errno`).
class TrashFolder {
public:
    /// The one in the user's home, to which links may lead.
    static Result<TrashFolder, int> ofHome(const URL& path);
    /// The user's part of the one that an administrator set up for all: `.Trash/UID`. ENOENT where
    /// there is none, EPERM for one that can't be trusted, which is logged once.
    static Result<TrashFolder, int> sharedAt(const MountPoint& disk);
    /// The user's own on a disk: `.Trash-UID`; EPERM for one that can't be trusted.
    static Result<TrashFolder, int> ownAt(const MountPoint& disk);

    /// Moves the item here under a name that is free, and writes down that it came from
    /// `originalPath`. On an error it is where it was, and nothing is left here: EXDEV when it lies
    /// on another disk, or behind another mount, ESTALE when something else came to stand in its
    /// place.
    Result<void, int> take(const TrashableItem& item, const std::string& originalPath) const;

private:
    struct InfoFile;

    static Result<TrashFolder, int> in(FileDescriptor folder);
    Result<InfoFile, int> makeInfoFile(const std::string& name, const std::string& text) const;
    void removeInfoFile(const std::string& name) const;
    Result<void, int> move(const TrashableItem& item, const std::string& name) const;
    void noteSize(const std::string& name, const InfoFile& info) const;

    FileDescriptor m_folder;
    FileDescriptor m_files;
    FileDescriptor m_info;
    std::size_t m_longestName = 0; ///< in bytes, so that the info file's name fits
};

} // namespace tidewright
