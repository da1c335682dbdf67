#include "tests/support/TempHome.h"

#include "core/platform/posix/FileDescriptor.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <set>
#include <vector>

namespace tidewright::test {

namespace {

namespace fs = std::filesystem;

void expectDone(bool done, const URL& url) {
    EXPECT_TRUE(done) << url.path() << ": " << std::strerror(errno);
}

void makeFolder(const URL& url) {
    std::error_code error;
    fs::create_directories(url.path(), error);
    EXPECT_FALSE(error) << url.path() << ": " << error.message();
}

void makeParent(const URL& url) { makeFolder(url.deletingLastPathComponent()); }

URL makeTemporaryFolder(TempHome::Place place) {
    constexpr const char* memory = "/dev/shm";
    const bool inMemory = place == TempHome::Place::memory && access(memory, W_OK) == 0;
    std::string pattern = std::string(inMemory ? memory : "/var/tmp") + "/tidewright-test-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr)
        ADD_FAILURE() << "no temporary folder: " << std::strerror(errno);
    return URL(pattern);
}

std::string contentsOf(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string describe(const fs::path& path) {
    struct stat status = {};
    lstat(path.c_str(), &status);
    std::string line = fmt::format(
        "{} mode={:o} size={} blocks={} links={} atime={}.{} mtime={}.{} ctime={}.{}",
        path.string(), status.st_mode, status.st_size, status.st_blocks, status.st_nlink,
        status.st_atim.tv_sec, status.st_atim.tv_nsec, status.st_mtim.tv_sec,
        status.st_mtim.tv_nsec, status.st_ctim.tv_sec, status.st_ctim.tv_nsec);
    if (S_ISLNK(status.st_mode))
        line += " -> " + fs::read_symlink(path).string();
    return line;
}

/// The folder and all that is below it, sorted.
std::vector<fs::path> everythingIn(const URL& folder) {
    std::vector<fs::path> paths{folder.path()};
    for (const auto& entry : fs::recursive_directory_iterator(folder.path()))
        paths.push_back(entry.path());
    std::ranges::sort(paths);
    return paths;
}

/// An ordinary user's folder that was closed is opened to its owner first.
FileDescriptor openFolder(int parent, const char* name) {
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    FileDescriptor folder(openat(parent, name, flags));
    if (!folder && errno == EACCES && fchmodat(parent, name, S_IRWXU, 0) == 0)
        folder = FileDescriptor(openat(parent, name, flags));
    fchmod(folder.get(), S_IRWXU);
    return folder;
}

bool isFolder(int parent, const char* name) {
    struct stat status = {};
    return fstatat(parent, name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode);
}

/// Removes what comes before the first folder that is not `stuck`, and returns that one's name.
std::optional<std::string> removeUpToFolder(int folder, const std::set<std::string>& stuck) {
    DIR* stream = fdopendir(openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (stream == nullptr)
        return std::nullopt;
    std::optional<std::string> found;
    while (const dirent* entry = found ? nullptr : readdir(stream)) {
        const std::string name = entry->d_name;
        if (name == "." || name == ".." || stuck.contains(name))
            continue;
        if (isFolder(folder, name.c_str()))
            found = name;
        else
            unlinkat(folder, name.c_str(), 0);
    }
    closedir(stream);
    return found;
}

/// Removes a tree of any depth: the libraries' own ways come to an end where paths get too long or
/// too many folders would be open. Here one is open at a time, and the way back is "..".
void removeTree(const URL& root) {
    struct Level {
        std::string name;
        std::set<std::string> stuck; ///< subfolders that can't be removed
    };
    std::vector<Level> levels{{root.path(), {}}};
    FileDescriptor folder = openFolder(AT_FDCWD, root.path().c_str());
    while (folder) {
        if (const auto inner = removeUpToFolder(folder.get(), levels.back().stuck)) {
            FileDescriptor opened = openFolder(folder.get(), inner->c_str());
            if (opened) {
                folder = std::move(opened);
                levels.push_back({*inner, {}});
            } else {
                levels.back().stuck.insert(*inner);
            }
            continue;
        }
        if (levels.size() == 1)
            break;
        folder = FileDescriptor(openat(folder.get(), "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        const std::string left = std::move(levels.back().name);
        levels.pop_back();
        if (unlinkat(folder.get(), left.c_str(), AT_REMOVEDIR) != 0)
            levels.back().stuck.insert(left);
    }
    rmdir(root.path().c_str());
}

} // namespace

TempHome::TempHome(Place place) : m_url(makeTemporaryFolder(place)) {}

TempHome::~TempHome() { removeTree(m_url); }

URL TempHome::folder(std::string_view relativePath) const {
    const URL url = path(relativePath);
    makeFolder(url);
    return url;
}

URL TempHome::file(std::string_view relativePath, std::string_view contents) const {
    const URL url = path(relativePath);
    makeParent(url);
    std::ofstream stream(url.path(), std::ios::binary | std::ios::trunc);
    stream << contents;
    stream.close();
    expectDone(stream.good(), url);
    return url;
}

URL TempHome::allocatedFile(std::string_view relativePath, Int64 bytes) const {
    const URL url = file(relativePath);
    const int descriptor = open(url.path().c_str(), O_WRONLY | O_CLOEXEC);
    expectDone(bytes == 0 || posix_fallocate(descriptor, 0, bytes) == 0, url);
    close(descriptor);
    return url;
}

URL TempHome::link(std::string_view relativePath, std::string_view target) const {
    const URL url = path(relativePath);
    makeParent(url);
    expectDone(symlink(std::string(target).c_str(), url.path().c_str()) == 0, url);
    return url;
}

URL TempHome::hardLink(std::string_view relativePath, std::string_view existing) const {
    const URL url = path(relativePath);
    makeParent(url);
    expectDone(::link(path(existing).path().c_str(), url.path().c_str()) == 0, url);
    return url;
}

URL TempHome::tool(std::string_view relativePath, std::string_view body) const {
    URL url = file(relativePath, fmt::format("#!/bin/sh\n{}\n", body));
    setMode(relativePath, 0755);
    return url;
}

void TempHome::setModified(std::string_view relativePath, Date date) const {
    const URL url = path(relativePath);
    const auto micros = date.time_since_epoch().count();
    const timespec time{static_cast<time_t>(micros / 1'000'000),
                        static_cast<long>(micros % 1'000'000 * 1000)};
    const timespec times[2] = {time, time};
    expectDone(utimensat(AT_FDCWD, url.path().c_str(), times, AT_SYMLINK_NOFOLLOW) == 0, url);
}

void TempHome::setMode(std::string_view relativePath, unsigned mode) const {
    const URL url = path(relativePath);
    expectDone(chmod(url.path().c_str(), static_cast<mode_t>(mode)) == 0, url);
}

std::string TempHome::snapshot() const {
    // Times first, contents last: reading is what changes an access time.
    std::string result = outline();
    for (const fs::path& path : everythingIn(m_url))
        if (fs::is_regular_file(fs::symlink_status(path)))
            result += path.string() + ": " + contentsOf(path) + "\n";
    return result;
}

std::string TempHome::outline() const {
    std::string result;
    for (const fs::path& path : everythingIn(m_url))
        result += describe(path) + "\n";
    return result;
}

std::string shellWaitFor(const URL& file) {
    return "i=0; until [ -e \"" + file.path() +
           "\" ] || [ $i = 6000 ]; do sleep 0.01; i=$((i + 1)); done";
}

} // namespace tidewright::test
