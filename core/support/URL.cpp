#include "core/support/URL.h"

#include <algorithm>
#include <vector>

namespace tidewright {

namespace {

std::string_view withoutTrailingSlashes(std::string_view path) {
    while (path.size() > 1 && path.back() == '/')
        path.remove_suffix(1);
    return path;
}

} // namespace

std::string URL::lastPathComponent() const {
    const std::string_view path = withoutTrailingSlashes(m_path);
    if (path == "/")
        return "/";
    return std::string(path.substr(path.rfind('/') + 1));
}

std::string URL::pathExtension() const {
    const std::string name = lastPathComponent();
    const std::size_t dot = name.rfind('.');
    if (dot == std::string::npos || dot == 0)
        return {};
    return name.substr(dot + 1);
}

URL URL::deletingLastPathComponent() const {
    const std::string_view path = withoutTrailingSlashes(m_path);
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos)
        return URL();
    return URL(std::string(withoutTrailingSlashes(path.substr(0, slash + 1))));
}

URL URL::appending(std::string_view relativePath) const {
    while (!relativePath.empty() && relativePath.front() == '/')
        relativePath.remove_prefix(1);
    if (relativePath.empty())
        return *this;
    std::string path(withoutTrailingSlashes(m_path));
    if (path != "/")
        path += '/';
    path += relativePath;
    return URL(std::move(path));
}

URL URL::standardized() const {
    std::vector<std::string_view> kept;
    const std::string_view path = m_path;
    for (std::size_t start = 0; start < path.size();) {
        const std::size_t end = std::min(path.find('/', start), path.size());
        const std::string_view component = path.substr(start, end - start);
        if (component == "..") {
            if (!kept.empty())
                kept.pop_back();
        } else if (!component.empty() && component != ".") {
            kept.push_back(component);
        }
        start = end + 1;
    }
    std::string result;
    for (const std::string_view component : kept)
        result.append("/").append(component);
    return URL(result.empty() ? "/" : std::move(result));
}

bool URL::isInside(const URL& folder) const {
    const std::string& outer = folder.m_path;
    if (!m_path.starts_with(outer))
        return false;
    return m_path.size() == outer.size() || m_path[outer.size()] == '/';
}

} // namespace tidewright
