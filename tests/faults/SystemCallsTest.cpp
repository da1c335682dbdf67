// Before a fault proves anything, it is shown that faults happen.
#include "tests/faults/SystemCalls.h"

#include "core/cleaning/PathPolicy.h"
#include "core/platform/FileContents.h"
#include "core/platform/Removal.h"
#include "tests/support/TempHome.h"

#include <gmock/gmock.h>

#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <functional>

namespace tidewright::test {
namespace {

struct Call {
    std::string name;
    std::function<bool(const std::string&)> succeeds; ///< is given the path of an empty file
};

bool isOpen(int descriptor) {
    if (descriptor >= 0)
        close(descriptor);
    return descriptor >= 0;
}

std::string folderOf(const std::string& path) {
    return URL(path).deletingLastPathComponent().path();
}

/// One call of the C library each, made by this very program.
const std::vector<Call>& calls() {
    static const std::vector<Call> all{
        {"open", [](const std::string& path) { return isOpen(open(path.c_str(), O_RDONLY)); }},
        {"openat",
         [](const std::string& path) { return isOpen(openat(AT_FDCWD, path.c_str(), O_RDONLY)); }},
        {"openat2",
         [](const std::string& path) {
             open_how how = {};
             return isOpen(
                 static_cast<int>(syscall(SYS_openat2, AT_FDCWD, path.c_str(), &how, sizeof how)));
         }},
        {"fdopendir",
         [](const std::string& path) {
             DIR* stream = fdopendir(open(folderOf(path).c_str(), O_RDONLY | O_DIRECTORY));
             return stream != nullptr && closedir(stream) == 0;
         }},
        {"readdir",
         [](const std::string& path) {
             DIR* stream = opendir(folderOf(path).c_str());
             const bool read = readdir(stream) != nullptr;
             const int error = errno;
             closedir(stream);
             errno = error;
             return read;
         }},
        {"fstat",
         [](const std::string& path) {
             struct stat status = {};
             const int file = open(path.c_str(), O_RDONLY);
             const bool known = fstat(file, &status) == 0;
             const int error = errno;
             close(file);
             errno = error;
             return known;
         }},
        {"fstatat",
         [](const std::string& path) {
             struct stat status = {};
             return fstatat(AT_FDCWD, path.c_str(), &status, 0) == 0;
         }},
        {"statx",
         [](const std::string& path) {
             struct statx facts = {};
             return statx(AT_FDCWD, path.c_str(), 0, STATX_BASIC_STATS, &facts) == 0;
         }},
        {"unlinkat",
         [](const std::string& path) { return unlinkat(AT_FDCWD, path.c_str(), 0) == 0; }},
        {"unlink", [](const std::string& path) { return unlink(path.c_str()) == 0; }},
        {"renameat2",
         [](const std::string& path) {
             return renameat2(AT_FDCWD, path.c_str(), AT_FDCWD, (path + "2").c_str(), 0) == 0;
         }},
        {"renameat",
         [](const std::string& path) {
             return renameat(AT_FDCWD, path.c_str(), AT_FDCWD, (path + "2").c_str()) == 0;
         }},
        {"mkdirat",
         [](const std::string& path) {
             return mkdirat(AT_FDCWD, (path + "2").c_str(), 0700) == 0;
         }},
        {"mkdir", [](const std::string& path) { return mkdir((path + "2").c_str(), 0700) == 0; }},
        {"write",
         [](const std::string& path) {
             const int file = open(path.c_str(), O_WRONLY);
             const bool written = write(file, "x", 1) == 1;
             const int error = errno;
             close(file);
             errno = error;
             return written;
         }},
        {"ftruncate",
         [](const std::string& path) {
             const int file = open(path.c_str(), O_WRONLY);
             const bool cut = ftruncate(file, 0) == 0;
             const int error = errno;
             close(file);
             errno = error;
             return cut;
         }},
        {"fchmodat",
         [](const std::string& path) { return fchmodat(AT_FDCWD, path.c_str(), 0600, 0) == 0; }},
        {"chmod", [](const std::string& path) { return chmod(path.c_str(), 0600) == 0; }},
        {"readlinkat",
         [](const std::string& path) {
             char target[1];
             const std::string link = path + "-link";
             return readlinkat(AT_FDCWD, link.c_str(), target, sizeof target) == 1;
         }},
        {"fsync",
         [](const std::string& path) {
             const int file = open(path.c_str(), O_WRONLY);
             const bool isOnDisk = fsync(file) == 0;
             const int error = errno;
             close(file);
             errno = error;
             return isOnDisk;
         }},
        {"rename",
         [](const std::string& path) { return rename(path.c_str(), (path + "2").c_str()) == 0; }},
        {"fchmod",
         [](const std::string& path) {
             const int file = open(path.c_str(), O_WRONLY);
             const bool changed = fchmod(file, 0600) == 0;
             const int error = errno;
             close(file);
             errno = error;
             return changed;
         }},
    };
    return all;
}

class SystemCallsTest : public testing::Test {
protected:
    TempHome home;
    std::string file() const {
        home.link("file-link", "x");
        return home.file("file").path();
    }
};

TEST_F(SystemCallsTest, EachCallIsTried) {
    std::vector<std::string> tried;
    for (const Call& call : calls())
        tried.push_back(call.name);
    EXPECT_THAT(tried, testing::UnorderedElementsAreArray(faultyCalls()));
}

TEST_F(SystemCallsTest, EachCallSucceedsUntilItIsToldToFail) {
    for (const Call& call : calls()) {
        TempHome place;
        place.link("file-link", "x");
        const std::string path = place.file("file").path();
        const SystemCalls watch;
        EXPECT_TRUE(call.succeeds(path)) << call.name;
        EXPECT_EQ(watch.counts().at(call.name), 1U) << call.name;
        EXPECT_FALSE(watch.hasFailed());
    }
}

TEST_F(SystemCallsTest, EachCallFailsWithTheErrorThatWasOrdered) {
    const std::string path = file();
    for (const Call& call : calls()) {
        const SystemCalls watch({call.name, 1, 1, ESTALE});
        errno = 0;
        EXPECT_FALSE(call.succeeds(path)) << call.name;
        EXPECT_EQ(errno, ESTALE) << call.name;
        EXPECT_TRUE(watch.hasFailed()) << call.name;
    }
    EXPECT_TRUE(fileExists(URL(path))) << "what fails does nothing";
}

TEST_F(SystemCallsTest, OnlyTheCallsThatWereNamedFail) {
    const std::string path = file();
    const SystemCalls watch({"chmod", 2, 2, EIO});
    std::vector<int> results;
    for (int i = 0; i < 5; ++i)
        results.push_back(chmod(path.c_str(), 0600));
    EXPECT_THAT(results, testing::ElementsAre(0, -1, -1, 0, 0));
}

TEST_F(SystemCallsTest, AFaultReachesTheProgramItself) {
    const URL item = home.file("cache/a");
    const PathPolicy policy(home.url(), home.path("tmp"), {}, {});
    const auto approved = policy.validate(item, false);
    ASSERT_TRUE(approved);
    {
        const SystemCalls watch({"unlinkat", 1, 1000, EIO});
        EXPECT_FALSE(removeOnce(*approved));
        EXPECT_TRUE(watch.hasFailed());
    }
    EXPECT_TRUE(fileExists(item));
    EXPECT_TRUE(removeOnce(*approved));
    EXPECT_FALSE(fileExists(item));
}

} // namespace
} // namespace tidewright::test
