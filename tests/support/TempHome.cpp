#include "tests/support/TempHome.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
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

URL makeTemporaryFolder() {
    std::string pattern = "/var/tmp/tidewright-test-XXXXXX";
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

} // namespace

TempHome::TempHome() : m_url(makeTemporaryFolder()) {}

TempHome::~TempHome() {
    std::error_code ignored;
    for (auto entry = fs::recursive_directory_iterator(
             m_url.path(), fs::directory_options::skip_permission_denied, ignored);
         entry != fs::recursive_directory_iterator(); entry.increment(ignored))
        if (entry->is_directory(ignored) && !entry->is_symlink(ignored))
            fs::permissions(entry->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
    fs::remove_all(m_url.path(), ignored);
}

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
    std::vector<fs::path> paths{m_url.path()};
    for (const auto& entry : fs::recursive_directory_iterator(m_url.path()))
        paths.push_back(entry.path());
    std::ranges::sort(paths);
    // Times first, contents last: reading is what changes an access time.
    std::string result;
    for (const fs::path& path : paths)
        result += describe(path) + "\n";
    for (const fs::path& path : paths)
        if (fs::is_regular_file(fs::symlink_status(path)))
            result += path.string() + ": " + contentsOf(path) + "\n";
    return result;
}

} // namespace tidewright::test
