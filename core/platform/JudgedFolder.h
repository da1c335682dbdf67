// A folder in which something was judged, so that it can be told later from any other that has come
// to stand at its path.
#pragma once

#include "core/platform/FileInfo.h"
#include "core/platform/posix/FileDescriptor.h"

#include <memory>
#include <vector>

namespace tidewright {

/// Immutable; shared by all that was judged in it.
class JudgedFolder {
public:
    /// Whether a descriptor is kept, which makes sure that the folder's identity is not given to
    /// another one. Where very many folders are judged, only the first are kept open.
    enum class Hold { open, byIdentity };

    /// The folder at a path without any link; otherwise ELOOP or ENOTDIR.
    static Result<std::shared_ptr<const JudgedFolder>, SystemError> open(const URL& path,
                                                                         Hold hold);

    const URL& path() const { return m_path; }
    const FileIdentity& identity() const { return m_lineage.front(); }
    /// The folder and every folder above it, the root last: as they really lie, whatever the path.
    const std::vector<FileIdentity>& lineage() const { return m_lineage; }

    /// What stands in it under this name just now, a link itself; absent where nothing does.
    Result<std::optional<FileIdentity>, SystemError> entry(const std::string& name) const;

    /// A handle for acting in the folder. Fails with ESTALE when another folder stands at the path
    /// or this one was moved away, and with ENOENT when it was removed.
    Result<FileDescriptor, SystemError> reopen() const;

private:
    JudgedFolder() = default;

    URL m_path;
    std::vector<FileIdentity> m_lineage;
    FileDescriptor m_folder; ///< none when held by identity
};

} // namespace tidewright
