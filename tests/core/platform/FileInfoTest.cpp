#include "core/platform/FileInfo.h"

#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <limits>

namespace tidewright {

namespace {

using namespace std::chrono;
using test::TempHome;

FileInfo infoOf(const URL& url, Links links = Links::dontFollow) {
    const auto info = fileInfo(url, links);
    EXPECT_TRUE(info.has_value()) << url.path();
    return info.value_or(FileInfo());
}

FileKind kindOf(const URL& url, Links links = Links::dontFollow) { return infoOf(url, links).kind; }

void setModified(const URL& url, timespec time) {
    const std::array<timespec, 2> times{time, time};
    EXPECT_EQ(utimensat(AT_FDCWD, url.path().c_str(), times.data(), AT_SYMLINK_NOFOLLOW), 0);
}

TEST(FileInfoTest, KindIsThatOfTheEntryOrOfWhatALinkLeadsTo) {
    const TempHome home;
    const URL pipe = home.path("pipe");
    const URL socket = home.path("socket");
    ASSERT_EQ(mkfifo(pipe.path().c_str(), 0644), 0);
    ASSERT_EQ(mknod(socket.path().c_str(), S_IFSOCK | 0644, 0), 0);
    EXPECT_EQ(kindOf(home.file("file")), FileKind::regular);
    EXPECT_EQ(kindOf(home.folder("folder")), FileKind::directory);
    EXPECT_EQ(kindOf(pipe), FileKind::other);
    EXPECT_EQ(kindOf(socket), FileKind::other);
    EXPECT_EQ(kindOf(URL("/dev/null")), FileKind::other);

    for (const char* target : {"file", "folder", "pipe"}) {
        const URL link = home.link(fmt::format("link to {}", target), target);
        EXPECT_EQ(kindOf(link), FileKind::symbolicLink);
        EXPECT_EQ(kindOf(link, Links::follow), kindOf(home.path(target)));
    }
}

TEST(FileInfoTest, WhatIsNotThereIsAnErrorWithItsPlace) {
    const TempHome home;
    const URL missing = home.path("missing");
    const auto info = fileInfo(missing, Links::dontFollow);
    ASSERT_FALSE(info.has_value());
    EXPECT_EQ(info.error().code, ENOENT);
    EXPECT_EQ(info.error().path, missing.path());
    EXPECT_FALSE(fileInfo(home.file("file").appending("below"), Links::follow).has_value());
    EXPECT_FALSE(fileInfo(URL(), Links::follow).has_value());
}

TEST(FileInfoTest, LinkThatLeadsNowhereOrInACircleIsThereOnItsOwn) {
    const TempHome home;
    const URL nowhere = home.link("nowhere", "missing");
    const URL circle = home.link("circle", "circle");
    EXPECT_EQ(kindOf(nowhere), FileKind::symbolicLink);
    EXPECT_EQ(kindOf(circle), FileKind::symbolicLink);
    EXPECT_EQ(fileInfo(nowhere, Links::follow).map_error([](auto e) { return e.code; }),
              Failure(ENOENT));
    EXPECT_EQ(fileInfo(circle, Links::follow).map_error([](auto e) { return e.code; }),
              Failure(ELOOP));
}

TEST(FileInfoTest, SizesAreTheLengthAndTheBlocks) {
    const TempHome home;
    const URL file = home.allocatedFile("file", 65'536);
    EXPECT_EQ(infoOf(file).logicalBytes, 65'536);
    EXPECT_EQ(infoOf(file).allocatedBytes, 65'536);
    const URL sparse = home.file("sparse");
    ASSERT_EQ(truncate(sparse.path().c_str(), 5'000'000'000), 0);
    EXPECT_EQ(infoOf(sparse).logicalBytes, 5'000'000'000);
    EXPECT_EQ(infoOf(sparse).allocatedBytes, 0);
    EXPECT_EQ(infoOf(home.link("link", "file"), Links::follow).logicalBytes, 65'536);
    EXPECT_EQ(infoOf(home.path("link")).logicalBytes, 4);
}

TEST(FileInfoTest, HardLinksShareNumberAndCount) {
    const TempHome home;
    const URL a = home.file("a");
    EXPECT_EQ(infoOf(a).linkCount, 1U);
    const URL b = home.hardLink("b", "a");
    const URL other = home.file("other");
    EXPECT_EQ(infoOf(a).linkCount, 2U);
    EXPECT_EQ(infoOf(a).inode, infoOf(b).inode);
    EXPECT_EQ(infoOf(a).device, infoOf(b).device);
    EXPECT_NE(infoOf(a).inode, infoOf(other).inode);

    struct stat status = {};
    ASSERT_EQ(stat(a.path().c_str(), &status), 0);
    EXPECT_EQ(infoOf(a).inode, status.st_ino);
    EXPECT_EQ(infoOf(a).device, status.st_dev);
    EXPECT_NE(infoOf(URL("/dev/null")).device, status.st_dev);
}

TEST(FileInfoTest, DatesAreKeptToTheMicrosecond) {
    const TempHome home;
    const URL file = home.file("file");
    setModified(file, {1'700'000'000, 123'456'789});
    EXPECT_EQ(infoOf(file).modified, Date(1'700'000'000'123'456us));
    home.link("link", "file");
    setModified(home.path("link"), {1'000'000'000, 0});
    EXPECT_EQ(infoOf(home.path("link")).modified, Date(1'000'000'000s));
    EXPECT_EQ(infoOf(home.path("link"), Links::follow).modified, Date(1'700'000'000'123'456us));
}

TEST(FileInfoTest, DatesBefore1970CountBackwards) {
    const TempHome home;
    const URL file = home.file("file");
    setModified(file, {-1, 500'000'000});
    EXPECT_EQ(infoOf(file).modified, Date(-500ms));
    setModified(file, {-86'400LL * 365, 0});
    EXPECT_EQ(iso8601Text(infoOf(file).modified), "1969-01-01T00:00:00Z");
}

TEST(FileInfoTest, DateThatNoCalendarHoldsIsSurvived) {
    // Such files come from broken archives; file systems with 64 bits for a second keep them.
    const TempHome memory(TempHome::Place::memory);
    const URL file = memory.file("file");
    setModified(file, {std::numeric_limits<time_t>::max(), 999'999'999});
    EXPECT_GT(infoOf(file).modified, Date(sys_days(2400y / January / 1)));
    setModified(file, {std::numeric_limits<time_t>::min(), 0});
    EXPECT_LT(infoOf(file).modified, Date(sys_days(1902y / January / 1)));
}

TEST(FileInfoTest, BirthIsNowForANewFileAndStaysWhenTheFileIsChanged) {
    const TempHome home;
    const Date before = currentDate() - 1min;
    const URL file = home.file("file");
    setModified(file, {1'000'000'000, 0});
    const auto created = infoOf(file).created;
    if (!created)
        GTEST_SKIP() << "this file system keeps no birth times";
    EXPECT_GT(*created, before);
    EXPECT_LT(*created, currentDate() + 1min);
}

TEST(FileInfoTest, ExistingFollowsLinks) {
    const TempHome home;
    EXPECT_TRUE(fileExists(home.file("file")));
    EXPECT_TRUE(fileExists(home.folder("folder")));
    EXPECT_TRUE(fileExists(home.link("link", "folder")));
    EXPECT_FALSE(fileExists(home.link("nowhere", "missing")));
    EXPECT_FALSE(fileExists(home.path("missing")));
    EXPECT_FALSE(fileExists(URL()));
    EXPECT_TRUE(fileExists(home.file("not UTF-8 \xff")));
}

TEST(FileInfoTest, ExecutableIsWhatHasTheBitFoldersIncluded) {
    const TempHome home;
    home.setMode("", 0755);
    home.file("plain");
    home.tool("tool", "exit 0");
    home.folder("folder");
    home.folder("closed");
    home.link("link to the tool", "tool");
    home.link("nowhere", "missing");
    home.setMode("closed", 0644);
    const auto answer = [&] {
        std::string result;
        for (const char* name :
             {"plain", "tool", "folder", "closed", "link to the tool", "nowhere", "missing"})
            result += isExecutableFile(home.path(name)) ? 'x' : '-';
        return result;
    };
    EXPECT_EQ(test::asOrdinaryUser(answer), "-xx-x--");
    EXPECT_FALSE(isExecutableFile(home.path("plain"))) << "not for root either";
}

TEST(FileInfoTest, ReadableIsWhatThisUserMayRead) {
    const TempHome home;
    home.setMode("", 0755);
    home.file("open");
    home.file("closed");
    home.file("closed folder/inside");
    home.folder("only entered");
    home.link("link to closed", "closed");
    home.setMode("closed", 0);
    home.setMode("closed folder", 0);
    home.setMode("only entered", 0111);
    const auto answer = [&] {
        std::string result;
        for (const char* name : {"open", "closed", "closed folder", "closed folder/inside",
                                 "only entered", "link to closed", "missing"}) {
            result += isReadableFile(home.path(name)) ? 'r' : '-';
            result += canOpenForReading(home.path(name)) ? 'o' : '-';
        }
        return result;
    };
    EXPECT_EQ(test::asOrdinaryUser(answer), "ro------------");
    EXPECT_TRUE(isReadableFile(home.path("only entered")) || geteuid() != 0);
}

TEST(FileInfoTest, OpeningForReadingNeverWaitsForAPipe) {
    const TempHome home;
    ASSERT_EQ(mkfifo(home.path("pipe").path().c_str(), 0644), 0);
    EXPECT_TRUE(canOpenForReading(home.path("pipe")));
    EXPECT_EQ(kindOf(home.path("pipe")), FileKind::other);
}

TEST(FileInfoTest, NamesMayHoldAnyByte) {
    const TempHome home;
    for (const std::string name : {"\xff\xfe\x80", "line\nbreak", "\x01"})
        EXPECT_EQ(infoOf(home.file(name, "four")).logicalBytes, 4) << name;
}

} // namespace

} // namespace tidewright
