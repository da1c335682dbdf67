#include "core/platform/FileReplacement.h"

#include "core/platform/Directory.h"
#include "core/platform/FileContents.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace tidewright {
namespace {

using test::asOrdinaryUser;
using test::TempHome;
using testing::UnorderedElementsAre;

constexpr Int64 most = 100'000'000;

std::string contents(const URL& url) { return readFile(url, most).value_or("unreadable"); }

struct stat statusOf(const URL& url) {
    struct stat status = {};
    lstat(url.path().c_str(), &status);
    return status;
}

class FileReplacementTest : public testing::Test {
protected:
    TempHome home;
    URL file = home.path("file");

    std::vector<std::string> names() const {
        std::vector<std::string> names;
        const auto entries = readDirectory(home.url());
        for (const DirectoryEntry& entry : *entries)
            names.push_back(entry.name);
        return names;
    }
};

TEST_F(FileReplacementTest, NewFileStandsInFoldersMadeForIt) {
    const URL deep = home.path("a/b/c/file");
    const mode_t usual = umask(0);
    const auto made = replaceFile(deep, "text");
    umask(usual);
    ASSERT_TRUE(made) << made.error().sentence();
    EXPECT_EQ(contents(deep), "text");
    EXPECT_EQ(statusOf(deep).st_mode & 07777, 0600U);
    EXPECT_EQ(statusOf(home.path("a")).st_mode & 07777, 0700U);
    EXPECT_EQ(statusOf(home.path("a/b/c")).st_mode & 07777, 0700U);
}

TEST_F(FileReplacementTest, EarlierFileIsReplacedAndNotWrittenTo) {
    home.file("file", "earlier, and longer than the later one");
    home.hardLink("canary", "file");
    for (const std::string& text : {std::string("later"), std::string(), std::string("\0\xff", 2),
                                    std::string(5'000'000, 'x')}) {
        ASSERT_TRUE(replaceFile(file, text));
        EXPECT_TRUE(contents(file) == text) << text.size();
    }
    EXPECT_EQ(contents(home.path("canary")), "earlier, and longer than the later one");
    EXPECT_THAT(names(), UnorderedElementsAre("file", "canary"));
}

TEST_F(FileReplacementTest, PermissionsAndOwnerStay) {
    home.file("file");
    for (const unsigned mode : {0600U, 0644U, 0444U, 0666U, 0U}) {
        home.setMode("file", mode);
        ASSERT_TRUE(replaceFile(file, "text"));
        EXPECT_EQ(statusOf(file).st_mode & 07777, mode);
    }
    if (geteuid() != 0)
        GTEST_SKIP() << "an ordinary user can give nothing away";
    ASSERT_EQ(chown(file.path().c_str(), 65534, 65533), 0);
    ASSERT_TRUE(replaceFile(file, "text"));
    EXPECT_EQ(statusOf(file).st_uid, 65534U);
    EXPECT_EQ(statusOf(file).st_gid, 65533U);
}

TEST_F(FileReplacementTest, WhatCantBeGivenToItsOwnerIsForItsUserOnly) {
    if (geteuid() != 0)
        GTEST_SKIP() << "an ordinary user has no files of others";
    home.setMode("", 0777);
    home.file("file", "root's");
    home.setMode("file", 0644);
    EXPECT_EQ(asOrdinaryUser([&] { return replaceFile(file, "text") ? "done" : "failed"; }),
              "done");
    EXPECT_EQ(statusOf(file).st_mode & 07777, 0600U);
    EXPECT_EQ(contents(file), "text");
}

TEST_F(FileReplacementTest, LinksStayAndWhatTheyLeadToIsReplaced) {
    home.file("real", "earlier");
    home.link("second", "real");
    home.link("file", "second");
    ASSERT_TRUE(replaceFile(file, "text"));
    EXPECT_EQ(contents(home.path("real")), "text");
    EXPECT_TRUE(S_ISLNK(statusOf(file).st_mode));
    EXPECT_TRUE(S_ISLNK(statusOf(home.path("second")).st_mode));
    EXPECT_TRUE(S_ISREG(statusOf(home.path("real")).st_mode));
    home.link("nowhere", "folder/new");
    ASSERT_TRUE(replaceFile(home.path("nowhere"), "text"));
    EXPECT_EQ(contents(home.path("folder/new")), "text");
    home.link("circle", "circle");
    EXPECT_EQ(replaceFile(home.path("circle"), "text").error().code, ELOOP);
}

TEST_F(FileReplacementTest, WhatCantBeReplacedStaysAndNothingIsLeftBehind) {
    home.file("folder/inside", "kept");
    home.file("file", "kept");
    EXPECT_EQ(replaceFile(home.path("folder"), "text").error().code, EISDIR);
    EXPECT_EQ(replaceFile(file.appending("below"), "text").error().code, ENOTDIR);
    EXPECT_EQ(replaceFile(URL(file.path() + std::string("\0x", 2)), "text").error().code, EINVAL);
    EXPECT_EQ(replaceFile(home.path(std::string(300, 'n')), "text").error().code, ENAMETOOLONG);
    home.setMode("", 0555);
    EXPECT_EQ(asOrdinaryUser([&]() -> std::string {
                  const auto replaced = replaceFile(file, "text");
                  return replaced ? "replaced" : replaced.error().reason();
              }),
              "Permission denied");
    EXPECT_EQ(contents(file), "kept");
    EXPECT_EQ(contents(home.path("folder/inside")), "kept");
    EXPECT_THAT(names(), UnorderedElementsAre("file", "folder"));
}

TEST_F(FileReplacementTest, WhatIsPutAsideOverwritesNothing) {
    home.folder("file.old-3");
    home.link("file.old-4", "nowhere");
    for (const char* text : {"1", "2", "5"}) {
        home.file("file", text);
        ASSERT_TRUE(putFileAside(file, ".old"));
        EXPECT_FALSE(fileExists(file));
    }
    EXPECT_EQ(contents(home.path("file.old")), "1");
    EXPECT_EQ(contents(home.path("file.old-2")), "2");
    EXPECT_EQ(contents(home.path("file.old-5")), "5");
    EXPECT_THAT(names(), UnorderedElementsAre("file.old", "file.old-2", "file.old-3", "file.old-4",
                                              "file.old-5"));
}

TEST_F(FileReplacementTest, WhatCantBePutAsideStaysAndTakesNoName) {
    EXPECT_EQ(putFileAside(file, ".old").error().code, ENOENT);
    home.file("folder/inside", "kept");
    EXPECT_FALSE(putFileAside(home.path("folder"), ".old"));
    EXPECT_THAT(names(), UnorderedElementsAre("folder"));
    EXPECT_EQ(contents(home.path("folder/inside")), "kept");
}

} // namespace
} // namespace tidewright
