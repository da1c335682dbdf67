#include "core/platform/ResolvedLinks.h"

#include "core/platform/posix/FolderOpening.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <deque>
#include <string>

namespace tidewright {

namespace {

constexpr int mostLinks = 40; // as many as Linux follows in one path

class Resolution {
public:
    explicit Resolution(const URL& url) : m_path(url.path()) {
        prepend(m_path);
        m_folder = openFolderHandle(AT_FDCWD, "/");
    }

    Result<URL, SystemError> result() {
        while (!m_ahead.empty()) {
            if (!m_folder)
                return Failure(SystemError{errno, "open the folder of", m_path});
            const std::string component = std::move(m_ahead.front());
            m_ahead.pop_front();
            if (const int error = step(component); error == ENOENT || error == ENOTDIR)
                return asText(component);
            else if (error != 0)
                return Failure(SystemError{error, "find out where a link leads in", m_path});
        }
        return URL(m_done).standardized();
    }

private:
    void prepend(const std::string& path) {
        std::deque<std::string> components;
        for (std::size_t start = 0; start < path.size();) {
            const std::size_t end = std::min(path.find('/', start), path.size());
            if (end > start)
                components.push_back(path.substr(start, end - start));
            start = end + 1;
        }
        m_ahead.insert(m_ahead.begin(), components.begin(), components.end());
    }

    /// Goes one component further; an error number where that fails.
    int step(const std::string& component) {
        if (component == ".")
            return 0;
        if (component == "..") {
            m_done.resize(m_done.empty() ? 0 : m_done.rfind('/'));
            m_folder = openFolderHandle(m_folder.get(), "..");
            return m_folder ? 0 : errno;
        }
        std::array<char, PATH_MAX> target; // NOLINT: filled by readlinkat
        const ssize_t length =
            readlinkat(m_folder.get(), component.c_str(), target.data(), target.size());
        if (length >= 0)
            return follow(std::string(target.data(), static_cast<std::size_t>(length)));
        if (errno == ENAMETOOLONG) // a longer name than any can be
            return ENOENT;
        if (errno != EINVAL) // which says: no link
            return errno;
        FileDescriptor next = openFolderHandle(m_folder.get(), component.c_str());
        if (!next)
            return errno;
        m_folder = std::move(next);
        m_done.append("/").append(component);
        return 0;
    }

    int follow(const std::string& target) {
        if (++m_links > mostLinks)
            return ELOOP;
        if (target.starts_with('/')) {
            m_done.clear();
            m_folder = openFolderHandle(AT_FDCWD, "/");
        }
        prepend(target);
        return 0;
    }

    URL asText(const std::string& component) const {
        std::string path = m_done + "/" + component;
        for (const std::string& each : m_ahead)
            path.append("/").append(each);
        return URL(std::move(path)).standardized();
    }

    std::string m_path;
    std::string m_done;      ///< empty for the root
    FileDescriptor m_folder; ///< the one at `m_done`
    std::deque<std::string> m_ahead;
    int m_links = 0;
};

} // namespace

Result<URL, SystemError> resolvedLinks(const URL& url) { return Resolution(url).result(); }

} // namespace tidewright
