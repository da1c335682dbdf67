// Trees that nobody would think of, made from a number.
#pragma once

#include "core/support/URL.h"

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace tidewright::test {

/// Fills folders with files of all sizes, sparse files, folders, hard links, symbolic links to
/// anything (also in circles, to nothing, and out of the tree), pipes and sockets, under names that
/// hold line breaks and bytes that are not UTF-8. The same seed gives the same tree.
class RandomTree {
public:
    explicit RandomTree(std::uint32_t seed) : m_random(seed) {}

    /// Makes so many entries inside the folder `root`. A hard link may lead to a file of an earlier
    /// call. What can't be made fails the test that asked for it.
    void fill(const URL& root, int entries);

    /// Takes reading, entering or both away from about one in eight of the folders made; last.
    void closeSomeFolders();

private:
    std::size_t below(std::size_t limit);
    std::string name();
    std::string pathInFolder();
    void makeEntry();
    void makeFolder(const std::string& path);
    void makeFile(const std::string& path);
    void makeHardLink(const std::string& path);
    void makeSymbolicLink(const std::string& path);

    std::mt19937 m_random;
    std::uint64_t m_names = 0;
    std::vector<std::string> m_folders; ///< of the call under way, its root first
    std::vector<std::string> m_allFolders;
    std::vector<std::string> m_files; ///< what may get another hard link
};

} // namespace tidewright::test
