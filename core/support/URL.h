// The location of a file: an absolute path as the bytes that the file system gave.
//
// Everything here is text; nothing touches the disk. Names that are not UTF-8 survive unchanged.
#pragma once

#include <compare>
#include <string>
#include <string_view>

namespace tidewright {

class URL {
public:
    URL() = default;
    /// `path` is kept as it stands, a trailing slash and ".." included.
    explicit URL(std::string path) : m_path(std::move(path)) {}

    const std::string& path() const { return m_path; }

    /// The last component without slashes; "/" for the root, empty for an empty path.
    std::string lastPathComponent() const;
    /// What follows the last dot of the last component; empty for ".bashrc" and "a.".
    std::string pathExtension() const;
    /// The folder that holds this location; the root's is the root.
    URL deletingLastPathComponent() const;
    /// This location with a relative path of one or several components behind it.
    URL appending(std::string_view relativePath) const;
    /// Without ".", ".." and duplicate or trailing slashes. ".." at the root stays at the root.
    URL standardized() const;
    /// Whether the path is `folder`'s or begins with it and a slash; both taken as they stand.
    bool isInside(const URL& folder) const;

    auto operator<=>(const URL&) const = default;

private:
    std::string m_path;
};

} // namespace tidewright
