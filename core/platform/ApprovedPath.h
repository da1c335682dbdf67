// The permission to remove one item or to move it to the Trash. Only the path policy can give it,
// so deletion that nobody has checked does not compile.
#pragma once

#include "core/platform/JudgedFolder.h"

#include <string>

namespace tidewright {

/// A plain value; valid for as long as what it was given for is what it was.
class ApprovedPath {
public:
    /// Standardised, with the links in it as they stand.
    const URL& url() const { return m_url; }
    /// The item's name in its folder.
    const std::string& name() const { return m_name; }
    /// The folder that really holds the item, or why there is none to act in: ENOENT or ENOTDIR
    /// where it does not exist.
    const Result<std::shared_ptr<const JudgedFolder>, SystemError>& folder() const {
        return m_folder;
    }
    /// What stood there when it was judged; absent when nothing did.
    const std::optional<FileIdentity>& item() const { return m_item; }

private:
    friend class PathPolicy;
    ApprovedPath(URL url,
                 Result<std::shared_ptr<const JudgedFolder>, SystemError> folder,
                 std::optional<FileIdentity> item)
        : m_url(std::move(url)),
          m_name(m_url.lastPathComponent()),
          m_folder(std::move(folder)),
          m_item(item) {}

    URL m_url;
    std::string m_name;
    Result<std::shared_ptr<const JudgedFolder>, SystemError> m_folder;
    std::optional<FileIdentity> m_item;
};

} // namespace tidewright
