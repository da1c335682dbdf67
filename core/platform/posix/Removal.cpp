#include "core/platform/Removal.h"

#include "core/platform/posix/FileIdentity.h"
#include "core/platform/posix/FolderChain.h"
#include "core/platform/posix/OwnerPermissions.h"
#include "core/platform/posix/StandingItem.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>

namespace tidewright {

namespace {

using Kind = FileActionError::Kind;

// A folder that was refilled while it was emptied is read so many times at most, and all folders of
// one removal together are read again so often at most. No reading may bring more entries than the
// one before, few apart: who fills faster than we empty would keep us busy for ever.
constexpr int mostReadings = 32;
constexpr int mostReadingsAgain = 10'000;
constexpr std::size_t fewEntries = 1'000;

/// What opening a file or a link as a folder fails with.
bool isNoFolder(int error) { return error == ENOTDIR || error == ELOOP; }

/// What unlinking a folder as a file fails with, on Linux and on macOS; the second has other
/// reasons, too.
bool mayBeFolder(int error) { return error == EISDIR || error == EPERM; }

bool isNotEmpty(int error) { return error == ENOTEMPTY || error == EEXIST; }

Kind kindOf(int error) {
    if (error == EXDEV)
        return Kind::mounted;
    return error == ESTALE ? Kind::replaced : Kind::system;
}

FileActionError failureOf(int error, const char* operation, std::string path) {
    return {kindOf(error), {error, operation, std::move(path)}};
}

/// 0 or an error number.
int unlinkEntry(int folder, const char* name, int flags) {
    while (unlinkat(folder, name, flags) != 0)
        if (errno != EINTR)
            return errno;
    return 0;
}

FolderChain chainFor(const ApprovedPath& item, const StandingItem& standing) {
    return {standing.folder.get(), item.url().deletingLastPathComponent().path()};
}

/// Whether the innermost folder of the chain is the item.
bool isItem(const FolderChain& chain, const StandingItem& standing) {
    struct stat status = {};
    return fstat(chain.descriptor(), &status) == 0 && identityOf(status) == standing.identity;
}

class Removal {
public:
    Removal(const StandingItem& item, FolderChain chain)
        : m_item(item),
          m_chain(std::move(chain)) {}

    Result<void, FileActionError> run() {
        removeEntry(m_item.name.c_str(), m_item.isFolder);
        while (m_chain.depth() > 0)
            step();
        if (m_error)
            return Failure(std::move(*m_error));
        return {};
    }

private:
    /// One of the chain.
    struct Folder {
        bool hasFailed = false; ///< something in it stays
        int readings = 1;
        std::size_t entries = 0; ///< that the reading under way has brought
        std::size_t mostEntries = std::numeric_limits<std::size_t>::max();
    };

    void step() {
        Folder& folder = m_folders.back();
        const auto entry = m_chain.next();
        if (entry && ++folder.entries <= folder.mostEntries)
            return removeEntry(entry->name, entry->kind == FileKind::directory);
        const int error = entry ? ENOTEMPTY : errno;
        if (error != 0) {
            folder.hasFailed = true;
            report(error, entry ? "remove" : "list", m_chain.path());
        }
        leave();
    }

    /// Removes what is no folder, and enters a folder. Which it is may be unknown, or have changed
    /// meanwhile.
    void removeEntry(const char* name, bool isFolder) {
        int error = isFolder ? enter(name) : unlinkEntry(m_chain.descriptor(), name, 0);
        if (isFolder && isNoFolder(error))
            error = m_chain.depth() > 0 ? unlinkEntry(m_chain.descriptor(), name, 0) : ESTALE;
        if (!isFolder && mayBeFolder(error))
            if (const int other = enter(name); !isNoFolder(other))
                error = other;
        if (error != 0 && error != ENOENT)
            passOver(name, error);
    }

    /// 0 when the folder was entered, or is gone already; otherwise an error number.
    int enter(const char* name) {
        if (!m_chain.enter(name)) {
            // One that may not be read can be removed nevertheless when it is empty.
            const int error = errno;
            const bool isGone = error == EACCES && removeFolder(name) == 0;
            return isGone ? 0 : error;
        }
        if (m_chain.depth() == 1 && !isItem(m_chain, m_item)) {
            m_chain.leave();
            return ESTALE;
        }
        m_folders.emplace_back();
        return 0;
    }

    int removeFolder(const char* name) {
        return unlinkEntry(m_chain.descriptor(), name, AT_REMOVEDIR);
    }

    /// Goes back up from the innermost folder and removes it, unless something stays in it.
    void leave() {
        const Folder left = m_folders.back();
        m_folders.pop_back();
        const auto name = m_chain.leave();
        if (!name)
            return report(ESTALE, "go back up in", m_chain.path(m_item.name));
        if (left.hasFailed)
            return keep();
        const int error = removeFolder(name->c_str());
        if ((isNotEmpty(error) || isNoFolder(error)) && left.readings < mostReadings &&
            m_readingsAgain < mostReadingsAgain)
            return readAgain(name->c_str(), left);
        if (error != 0 && error != ENOENT)
            passOver(name->c_str(), error);
    }

    void readAgain(const char* name, const Folder& before) {
        ++m_readingsAgain;
        const std::size_t depth = m_chain.depth();
        removeEntry(name, true);
        if (m_chain.depth() == depth)
            return;
        m_folders.back().readings = before.readings + 1;
        m_folders.back().mostEntries = std::max(before.entries, fewEntries);
    }

    void passOver(const char* name, int error) {
        if (!m_error)
            report(error, "remove", m_chain.path(name));
        keep();
    }

    void keep() {
        if (m_chain.depth() == 0)
            return;
        m_folders.back().hasFailed = true;
        m_chain.passOver();
    }

    void report(int error, const char* operation, std::string path) {
        if (!m_error)
            m_error = failureOf(error, operation, std::move(path));
    }

    const StandingItem& m_item;
    FolderChain m_chain;
    std::vector<Folder> m_folders;
    std::optional<FileActionError> m_error; ///< the first
    int m_readingsAgain = 0;
};

enum class Next { goOn, passOver, stop };

/// Shows `visit` everything in an item, a folder before what it holds. What can't be read is passed
/// over.
template <class Visit>
void walk(const StandingItem& standing, FolderChain& chain, const Visit& visit) {
    if (!standing.isFolder || !chain.enter(standing.name.c_str()) || !isItem(chain, standing))
        return;
    while (chain.depth() > 0) {
        const auto entry = chain.next();
        if (!entry) {
            if (chain.leave() && chain.depth() > 0)
                chain.passOver();
            continue;
        }
        const bool isFolder = entry->kind.value_or(FileKind::directory) == FileKind::directory;
        const Next next = visit(entry->name, isFolder);
        if (next == Next::stop)
            return;
        if (next == Next::passOver || !isFolder || !chain.enter(entry->name))
            chain.passOver();
    }
}

bool isAppBundle(const URL& url) { return url.pathExtension() == "app"; }

} // namespace

Result<Presence, FileActionError> presence(const ApprovedPath& item) {
    return standingItem(item).map(
        [](const auto& standing) { return standing ? Presence::there : Presence::gone; });
}

Result<void, FileActionError> removeOnce(const ApprovedPath& item) {
    const auto standing = standingItem(item);
    if (!standing)
        return Failure(standing.error());
    if (!*standing)
        return {};
    return Removal(**standing, chainFor(item, **standing)).run();
}

void makeWritable(const ApprovedPath& item) {
    const auto standing = standingItem(item);
    if (!standing || !*standing)
        return;
    FolderChain chain = chainFor(item, **standing);
    giveOwnerAll(chain.descriptor(), item.name().c_str());
    walk(**standing, chain, [&](const char* name, bool) {
        giveOwnerAll(chain.descriptor(), name);
        return Next::goOn;
    });
}

bool containsAppBundle(const ApprovedPath& item) {
    if (isAppBundle(item.url()))
        return true;
    const auto standing = standingItem(item);
    if (!standing || !*standing)
        return false;
    FolderChain chain = chainFor(item, **standing);
    bool isFound = false;
    walk(**standing, chain, [&](const char* name, bool isFolder) {
        isFound = isAppBundle(URL(name));
        if (isFound)
            return Next::stop;
        return isFolder && isPackage(URL(chain.path(name))) ? Next::passOver : Next::goOn;
    });
    return isFound;
}

} // namespace tidewright
