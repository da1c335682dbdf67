// A real home folder on a real disk for one test, gone at its end.
#pragma once

#include "core/support/Bytes.h"
#include "core/support/Date.h"
#include "core/support/URL.h"

#include <string>
#include <string_view>

namespace tidewright::test {

/// A folder under /var/tmp (where folders have blocks, unlike those of a /tmp in memory). All paths
/// given to its functions are relative to it; folders on the way are made. A failure to make
/// something fails the test that asked for it.
class TempHome {
public:
    /// In memory, where the system offers that: for trees so large that a disk would take long.
    enum class Place { disk, memory };

    explicit TempHome(Place place = Place::disk);
    ~TempHome(); ///< removes all of it, unreadable folders included
    TempHome(const TempHome&) = delete;
    TempHome& operator=(const TempHome&) = delete;

    const URL& url() const { return m_url; }
    URL path(std::string_view relativePath) const { return m_url.appending(relativePath); }

    URL folder(std::string_view relativePath) const;
    URL file(std::string_view relativePath, std::string_view contents = {}) const;
    /// A file that takes `bytes` on disk without being written.
    URL allocatedFile(std::string_view relativePath, Int64 bytes) const;
    URL link(std::string_view relativePath, std::string_view target) const;
    URL hardLink(std::string_view relativePath, std::string_view existing) const;
    /// An executable shell script with this body.
    URL tool(std::string_view relativePath, std::string_view body) const;

    void setModified(std::string_view relativePath, Date date) const;
    void setMode(std::string_view relativePath, unsigned mode) const;

    /// Everything under the folder, one line an entry: path, kind, mode, size, times, contents.
    std::string snapshot() const;
    /// The same without contents: quick however large the files are. A write is seen in the times.
    std::string outline() const;

private:
    URL m_url;
};

/// Shell text, for a tool, that waits until the file is there; a minute at most, so that a test
/// that fails does not leave it waiting.
std::string shellWaitFor(const URL& file);

} // namespace tidewright::test
