#include "core/platform/FileContents.h"

#include "core/platform/FileInfo.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace tidewright {

namespace {

using test::TempHome;

constexpr Int64 cap = 1'000'000;

int errorOf(const URL& url, Int64 maxBytes = cap) {
    const auto contents = readFile(url, maxBytes);
    return contents ? 0 : contents.error().code;
}

TEST(FileContentsTest, AllBytesAreRead) {
    const TempHome home;
    std::string bytes;
    for (int i = 0; i < 300'000; ++i)
        bytes += static_cast<char>(i % 251);
    EXPECT_EQ(readFile(home.file("file", bytes), cap), bytes);
    EXPECT_EQ(readFile(home.file("empty"), cap), "");
    EXPECT_EQ(readFile(home.file("\xff\n", "name"), cap), "name");
}

TEST(FileContentsTest, LinksAreFollowed) {
    const TempHome home;
    home.file("file", "contents");
    EXPECT_EQ(readFile(home.link("link", "file"), cap), "contents");
    EXPECT_EQ(errorOf(home.link("nowhere", "missing")), ENOENT);
    EXPECT_EQ(errorOf(home.link("circle", "circle")), ELOOP);
}

TEST(FileContentsTest, FileUpToTheCapIsReadAndNotAByteMore) {
    const TempHome home;
    EXPECT_EQ(readFile(home.file("file", "12345"), 5), "12345");
    EXPECT_EQ(errorOf(home.file("longer", "123456"), 5), EFBIG);
    EXPECT_EQ(errorOf(home.file("much longer", std::string(500'000, 'x')), 5), EFBIG);
    EXPECT_EQ(readFile(home.file("empty"), 0), "");
    EXPECT_EQ(errorOf(home.path("file"), 0), EFBIG);
}

TEST(FileContentsTest, EndlessSparseFileIsGivenUpAtTheCap) {
    const TempHome home;
    const URL file = home.file("file");
    ASSERT_EQ(truncate(file.path().c_str(), 4'000'000'000'000), 0);
    EXPECT_EQ(errorOf(file), EFBIG);
}

TEST(FileContentsTest, FileThatTellsNoLengthIsReadToItsEnd) {
    EXPECT_NE(readFile(URL("/proc/self/status"), cap).value_or("").find("State:"),
              std::string::npos);
}

TEST(FileContentsTest, OnlyRegularFilesAreRead) {
    const TempHome home;
    const URL pipe = home.path("pipe");
    const URL socket = home.path("socket");
    ASSERT_EQ(mkfifo(pipe.path().c_str(), 0644), 0);
    ASSERT_EQ(mknod(socket.path().c_str(), S_IFSOCK | 0644, 0), 0);
    EXPECT_NE(errorOf(pipe), 0); // and is not waited for
    EXPECT_NE(errorOf(home.link("link to the pipe", "pipe")), 0);
    EXPECT_NE(errorOf(socket), 0);
    EXPECT_NE(errorOf(home.folder("folder")), 0);
    EXPECT_NE(errorOf(URL("/dev/zero")), 0);
    EXPECT_EQ(errorOf(home.path("missing")), ENOENT);
}

TEST(FileContentsTest, ErrorNamesThePlace) {
    const TempHome home;
    const auto contents = readFile(home.path("missing"), cap);
    ASSERT_FALSE(contents.has_value());
    EXPECT_EQ(contents.error().path, home.path("missing").path());
    EXPECT_EQ(contents.error().sentence(),
              "Could not read " + home.path("missing").path() + ": No such file or directory.");
}

TEST(FileContentsTest, OrdinaryUserReadsWhatIsOpenToEverybody) {
    const TempHome home;
    home.setMode("", 0755);
    home.file("closed", "secret");
    home.setMode("closed", 0);
    // Of somebody else's file the access time can't be kept; reading it works all the same.
    home.file("open", "public");
    const auto answer = [&] {
        return readFile(home.path("open"), cap).value_or("failed") + " " +
               readFile(home.path("closed"), cap).value_or("failed");
    };
    EXPECT_EQ(test::asOrdinaryUser(answer), "public failed");
}

TEST(FileContentsTest, AccessTimeStaysAsItWas) {
    const TempHome home;
    const URL file = home.file("file", "contents");
    home.link("link", "file");
    // Older than the last change, and so due for a new one at the next reading.
    constexpr std::array<timespec, 2> times{{{1'000'000'000, 0}, {1'100'000'000, 0}}};
    ASSERT_EQ(utimensat(AT_FDCWD, file.path().c_str(), times.data(), 0), 0);
    const auto accessed = [&] {
        struct stat status = {};
        stat(file.path().c_str(), &status);
        return status.st_atim.tv_sec;
    };
    EXPECT_TRUE(readFile(file, cap).has_value());
    EXPECT_TRUE(readFile(home.path("link"), cap).has_value());
    EXPECT_TRUE(canOpenForReading(file));
    EXPECT_EQ(accessed(), times[0].tv_sec);

    const int descriptor = open(file.path().c_str(), O_RDONLY | O_CLOEXEC);
    char byte = 0;
    EXPECT_EQ(read(descriptor, &byte, 1), 1); // does not take such care
    close(descriptor);
    if (accessed() == times[0].tv_sec)
        GTEST_SKIP() << "this file system keeps no access times";
}

} // namespace

} // namespace tidewright
