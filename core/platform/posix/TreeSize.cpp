#include "core/platform/TreeSize.h"

#include "core/platform/DirectoryStream.h"
#include "core/platform/posix/FileDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <string>
#include <vector>

namespace tidewright {

namespace {

constexpr Int64 bytesPerBlock = 512; // the unit of st_blocks, whatever the file system's own is
constexpr std::uint64_t visitsPerCancelCheck = 8192;

// A walk keeps so many folders open at most; those above are opened again on the way back.
constexpr std::size_t openFolders = 32;

/// A folder on the way from the root to where the walk is.
struct Frame {
    struct stat status = {};
    FileDescriptor folder;               ///< none while it is closed to save descriptors
    std::vector<std::string> subfolders; ///< still to be visited
};

bool isSameFolder(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

EntryFacts factsOf(const struct stat& status) {
    return {.inode = status.st_ino,
            .linkCount = status.st_nlink,
            .allocatedBytes = status.st_blocks * bytesPerBlock};
}

class TreeWalk {
public:
    TreeWalk(SeenInodes& seen, const CancelToken& cancel) : m_seen(seen), m_cancel(cancel) {}

    Int64 sizeOf(const char* root) {
        struct stat status = {};
        if (lstat(root, &status) != 0)
            return 0;
        m_device = status.st_dev;
        if (!S_ISDIR(status.st_mode)) {
            countFile(factsOf(status));
            return m_sum;
        }
        enter(AT_FDCWD, root, status);
        while (!m_frames.empty() && !m_stopped)
            step();
        return m_sum;
    }

private:
    /// Visits the next folder inside the innermost one, or leaves that.
    void step() {
        Frame& frame = m_frames.back();
        if (frame.subfolders.empty()) {
            leave();
            return;
        }
        const std::string name = std::move(frame.subfolders.back());
        frame.subfolders.pop_back();
        struct stat status = {};
        if (fstatat(frame.folder.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
            visit();
        else if (S_ISDIR(status.st_mode))
            enter(frame.folder.get(), name.c_str(), status);
        else
            countFile(factsOf(status));
    }

    /// Counts what a folder holds and makes it the innermost one. One that can't be read adds
    /// nothing, nor does one that a mount has put inside itself; a foreign device is not entered.
    void enter(int parent, const char* name, const struct stat& status) {
        if (!visit() || isAncestor(status))
            return;
        if (status.st_dev != m_device) {
            countFolder(status);
            return;
        }
        DirectoryStream stream = DirectoryStream::open(parent, name, Links::dontFollow);
        if (!stream) {
            visit();
            return;
        }
        Frame frame;
        frame.status = status;
        while (const auto entry = stream.next()) {
            if (!countEntry(stream.descriptor(), *entry, frame))
                return;
        }
        frame.folder = FileDescriptor(fcntl(stream.descriptor(), F_DUPFD_CLOEXEC, 0));
        if (m_frames.size() >= openFolders)
            m_frames[m_frames.size() - openFolders].folder.reset();
        m_frames.push_back(std::move(frame));
    }

    /// False when the walk was stopped.
    bool countEntry(int folder, const StreamEntry& entry, Frame& frame) {
        if (entry.kind == FileKind::directory) {
            frame.subfolders.emplace_back(entry.name);
            return true;
        }
        if (entry.kind && entry.facts)
            return countFile(*entry.facts);
        struct stat status = {};
        if (fstatat(folder, entry.name, &status, AT_SYMLINK_NOFOLLOW) != 0)
            return visit();
        if (S_ISDIR(status.st_mode)) {
            frame.subfolders.emplace_back(entry.name);
            return true;
        }
        return countFile(factsOf(status));
    }

    void leave() {
        Frame left = std::move(m_frames.back());
        m_frames.pop_back();
        countFolder(left.status);
        if (m_frames.empty() || m_frames.back().folder)
            return;
        // Back up by the folder's own "..", as long as that is still the folder that was left.
        Frame& above = m_frames.back();
        FileDescriptor folder(openat(left.folder.get(), "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        struct stat status = {};
        if (folder && fstat(folder.get(), &status) == 0 && isSameFolder(status, above.status))
            above.folder = std::move(folder);
        else
            above.subfolders.clear();
    }

    bool isAncestor(const struct stat& status) const {
        return std::ranges::any_of(
            m_frames, [&](const Frame& frame) { return isSameFolder(frame.status, status); });
    }

    bool countFolder(const struct stat& status) {
        if (!visit())
            return false;
        m_sum += status.st_blocks * bytesPerBlock;
        return true;
    }

    bool countFile(const EntryFacts& facts) {
        if (!visit())
            return false;
        if (facts.linkCount < 2 || m_seen.insert(facts.inode).second)
            m_sum += facts.allocatedBytes;
        return true;
    }

    /// Counts a visit; false when the walk is to stop.
    bool visit() {
        if (++m_visits % visitsPerCancelCheck == 0 && m_cancel.isCancelled())
            m_stopped = true;
        return !m_stopped;
    }

    SeenInodes& m_seen;
    const CancelToken& m_cancel;
    dev_t m_device = 0;
    std::vector<Frame> m_frames;
    std::uint64_t m_visits = 0;
    Int64 m_sum = 0;
    bool m_stopped = false;
};

} // namespace

Int64 allocatedTreeSize(const URL& root, SeenInodes& seen, const CancelToken& cancel) {
    if (root.path().find('\0') != std::string::npos)
        return 0;
    return TreeWalk(seen, cancel).sizeOf(root.path().c_str());
}

} // namespace tidewright
