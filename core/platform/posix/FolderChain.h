// The folders from an item down to where a walk through it is.
#pragma once

#include "core/platform/FileInfo.h"
#include "core/platform/posix/PlainEntries.h"

#include <string>
#include <vector>

namespace tidewright {

/// Keeps 30 folders open at most, whatever the depth: those above are closed, opened again on the
/// way back by ".." when that is still the folder that was left, and read again from their start.
/// No link is followed and no mount entered. One thread at a time.
class FolderChain {
public:
    /// `base` is the open folder that the walk begins in, and `path` its location for messages.
    FolderChain(int base, std::string path) : m_base(base), m_path(std::move(path)) {}

    std::size_t depth() const { return m_levels.size(); }
    /// The innermost folder's, or the base.
    int descriptor() const;
    /// Of the innermost folder, or of the base.
    const std::string& path() const { return m_path; }
    /// Of an entry of it.
    std::string path(const std::string& name) const { return m_path + "/" + name; }

    /// Makes the folder `name` in the innermost one the innermost. errno tells why it is not, as
    /// openSubfolder says.
    bool enter(const char* name);

    /// The next entry of the innermost folder, as PlainEntries::next.
    std::optional<StreamEntry> next();

    /// Says that the entry read last, or the folder left last, stays where it is: when the folder
    /// is read again from its start, as many entries are passed over as stay there.
    void passOver() { ++m_levels.back().staying; }

    /// Makes the folder above the innermost one, and returns the name of the one that was left.
    /// Absent when the way back is lost: the chain is then back at its base.
    std::optional<std::string> leave();

private:
    struct Level {
        std::size_t pathLength = 0;         ///< of the folder above
        std::optional<PlainEntries> stream; ///< none while it is closed to save descriptors
        FileIdentity identity;              ///< known from then on
        std::size_t staying = 0;            ///< entries that were passed over
        bool isReadAgain = false;           ///< and those are still to be skipped
    };

    void closeUppermost();
    bool reopen(Level& level, int below);

    int m_base;
    std::string m_path; ///< of the innermost folder
    std::vector<Level> m_levels;
};

} // namespace tidewright
