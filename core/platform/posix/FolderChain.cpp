#include "core/platform/posix/FolderChain.h"

#include "core/platform/posix/FileIdentity.h"
#include "core/platform/posix/FolderOpening.h"

namespace tidewright {

namespace {

constexpr std::size_t openFolders = 30;

} // namespace

int FolderChain::descriptor() const {
    return m_levels.empty() ? m_base : m_levels.back().stream->descriptor();
}

bool FolderChain::enter(const char* name) {
    PlainEntries entries(openSubfolder(descriptor(), name));
    if (!entries)
        return false;
    Level level;
    level.pathLength = m_path.size();
    level.stream = std::move(entries);
    m_levels.push_back(std::move(level));
    m_path.append("/").append(name);
    closeUppermost();
    return true;
}

void FolderChain::closeUppermost() {
    if (m_levels.size() <= openFolders)
        return;
    Level& level = m_levels[m_levels.size() - openFolders - 1];
    struct stat status = {};
    if (level.stream && fstat(level.stream->descriptor(), &status) == 0) {
        level.identity = identityOf(status);
        level.stream.reset();
    }
}

std::optional<StreamEntry> FolderChain::next() {
    Level& level = m_levels.back();
    if (std::exchange(level.isReadAgain, false))
        for (std::size_t i = 0; i < level.staying; ++i)
            if (!level.stream->next())
                return std::nullopt;
    return level.stream->next();
}

std::optional<std::string> FolderChain::leave() {
    const Level left = std::move(m_levels.back());
    m_levels.pop_back();
    std::string name = m_path.substr(left.pathLength + 1);
    m_path.resize(left.pathLength);
    if (m_levels.empty() || m_levels.back().stream ||
        reopen(m_levels.back(), left.stream->descriptor()))
        return name;
    m_path.resize(m_levels.front().pathLength);
    m_levels.clear();
    return std::nullopt;
}

bool FolderChain::reopen(Level& level, int below) {
    PlainEntries entries(openSubfolder(below, ".."));
    struct stat status = {};
    if (!entries || fstat(entries.descriptor(), &status) != 0 ||
        identityOf(status) != level.identity)
        return false;
    level.stream = std::move(entries);
    level.isReadAgain = true;
    return true;
}

} // namespace tidewright
