#include "tests/support/RandomTree.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace tidewright::test {

namespace {

// The names of all entries on the way have to fit into one path.
constexpr std::size_t longestPath = 3000;

void expectMade(bool made, const std::string& path) {
    EXPECT_TRUE(made) << path << ": " << std::strerror(errno);
}

} // namespace

std::size_t RandomTree::below(std::size_t limit) { return m_random() % limit; }

std::string RandomTree::name() {
    const std::string number = std::to_string(m_names++);
    switch (below(8)) {
    case 0:
        return "line\nbreak" + number;
    case 1:
        return "\xff\xc0not UTF-8 " + number;
    case 2:
        return "." + number;
    case 3:
        return "Gr\xc3\xb6\xc3\x9f"
               "e " +
               number;
    case 4:
        return number + std::string(below(255 - number.size()), 'x');
    default:
        return "entry " + number;
    }
}

std::string RandomTree::pathInFolder() {
    std::string path = m_folders[below(m_folders.size())] + "/" + name();
    return path.size() <= longestPath ? path : m_folders.front() + "/" + name();
}

void RandomTree::fill(const URL& root, int entries) {
    m_folders = {root.path()};
    for (int i = 0; i < entries; ++i)
        makeEntry();
    m_allFolders.insert(m_allFolders.end(), m_folders.begin() + 1, m_folders.end());
}

void RandomTree::makeEntry() {
    const std::string path = pathInFolder();
    switch (below(12)) {
    case 0:
    case 1:
    case 2:
        return makeFolder(path);
    case 3:
    case 4:
        return makeHardLink(path);
    case 5:
    case 6:
        return makeSymbolicLink(path);
    case 7:
        expectMade(mknod(path.c_str(), (below(2) == 0 ? S_IFIFO : S_IFSOCK) | 0644, 0) == 0, path);
        return m_files.push_back(path);
    default:
        return makeFile(path);
    }
}

void RandomTree::makeFolder(const std::string& path) {
    expectMade(mkdir(path.c_str(), 0755) == 0, path);
    m_folders.push_back(path);
}

void RandomTree::makeFile(const std::string& path) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    const std::string contents(below(4) == 0 ? 0 : below(30'000), 'c');
    expectMade(write(file, contents.data(), contents.size()) >= 0, path);
    if (below(4) == 0) // a hole of up to 100 MB behind the contents
        expectMade(ftruncate(file, static_cast<off_t>(contents.size() + below(100'000'000))) == 0,
                   path);
    close(file);
    m_files.push_back(path);
}

void RandomTree::makeHardLink(const std::string& path) {
    if (m_files.empty())
        return makeFile(path);
    const std::string& existing = m_files[below(m_files.size())];
    expectMade(linkat(AT_FDCWD, existing.c_str(), AT_FDCWD, path.c_str(), 0) == 0, path);
}

void RandomTree::makeSymbolicLink(const std::string& path) {
    const std::string folder = m_folders[below(m_folders.size())];
    const std::array<std::string, 8> targets{
        folder,       m_folders.front(),
        ".",          "..",
        path,         "no such thing",
        "/usr/share", m_files.empty() ? "/dev/null" : m_files[below(m_files.size())]};
    expectMade(symlink(targets[below(targets.size())].c_str(), path.c_str()) == 0, path);
    m_files.push_back(path);
}

void RandomTree::closeSomeFolders() {
    constexpr std::array<mode_t, 3> modes{0, 0444, 0111};
    for (auto folder = m_allFolders.rbegin(); folder != m_allFolders.rend(); ++folder)
        if (below(8) == 0)
            expectMade(chmod(folder->c_str(), modes[below(modes.size())]) == 0, *folder);
}

} // namespace tidewright::test
