#include "core/platform/Directory.h"

#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <set>

namespace tidewright {

// What a failed expectation shows.
static void PrintTo(const DirectoryEntry& entry, std::ostream* stream) {
    *stream << '"' << entry.name << "\" of kind " << static_cast<int>(entry.kind);
}

namespace {

using test::TempHome;
using testing::AllOf;
using testing::Field;
using testing::UnorderedElementsAre;

std::vector<DirectoryEntry> entriesOf(const URL& folder) {
    const auto entries = readDirectory(folder);
    EXPECT_TRUE(entries.has_value()) << folder.path();
    return entries.value_or(std::vector<DirectoryEntry>());
}

int errorOf(const URL& folder) {
    const auto entries = readDirectory(folder);
    return entries ? 0 : entries.error().code;
}

auto isEntry(const std::string& name, FileKind kind) {
    return AllOf(Field(&DirectoryEntry::name, name), Field(&DirectoryEntry::kind, kind));
}

TEST(DirectoryTest, AllEntriesAreListedWithTheirOwnKind) {
    const TempHome home;
    home.file("tree/file");
    home.file("tree/.hidden");
    home.file("tree/..more");
    home.file("tree/folder/not listed");
    home.link("tree/link to a folder", "folder");
    home.link("tree/link to nowhere", "missing");
    ASSERT_EQ(mkfifo(home.path("tree/pipe").path().c_str(), 0644), 0);
    ASSERT_EQ(mknod(home.path("tree/socket").path().c_str(), S_IFSOCK | 0644, 0), 0);
    EXPECT_THAT(entriesOf(home.path("tree")),
                UnorderedElementsAre(
                    isEntry("file", FileKind::regular), isEntry(".hidden", FileKind::regular),
                    isEntry("..more", FileKind::regular), isEntry("folder", FileKind::directory),
                    isEntry("link to a folder", FileKind::symbolicLink),
                    isEntry("link to nowhere", FileKind::symbolicLink),
                    isEntry("pipe", FileKind::other), isEntry("socket", FileKind::other)));
}

TEST(DirectoryTest, DetailsAreTheFactsOfEachFileAndOfNothingElse) {
    const TempHome home;
    home.allocatedFile("tree/file", 65'536);
    home.setModified("tree/file", Date(std::chrono::seconds(1'700'000'000)));
    home.folder("tree/folder");
    home.link("tree/link to the file", "file");
    home.link("tree/link to nowhere", "missing");
    ASSERT_EQ(mkfifo(home.path("tree/pipe").path().c_str(), 0644), 0);
    const auto entries = readDetailedDirectory(home.path("tree"));
    ASSERT_TRUE(entries.has_value());
    std::set<std::string> names;
    for (const DetailedEntry& entry : *entries) {
        names.insert(entry.name);
        const auto info = fileInfo(home.path("tree").appending(entry.name), Links::dontFollow);
        ASSERT_TRUE(info.has_value());
        EXPECT_EQ(entry.kind, info->kind) << entry.name;
        const bool isFile = entry.name == "file" || entry.name == "pipe";
        EXPECT_EQ(entry.facts.has_value(), isFile) << entry.name;
        if (entry.facts) {
            EXPECT_EQ(entry.facts->allocatedBytes, info->allocatedBytes) << entry.name;
            EXPECT_EQ(entry.facts->modified, info->modified) << entry.name;
        }
    }
    EXPECT_EQ(names, (std::set<std::string>{"file", "folder", "link to the file", "link to nowhere",
                                            "pipe"}));
    const auto missing = readDetailedDirectory(home.path("missing"));
    ASSERT_FALSE(missing.has_value());
    EXPECT_EQ(missing.error().code, ENOENT);
    EXPECT_EQ(missing.error().path, home.path("missing").path());
}

TEST(DirectoryTest, DetailsThatCantBeReadAreAbsent) {
    const TempHome home;
    home.setMode("", 0755);
    home.file("only listed/file");
    home.folder("only listed/folder");
    home.setMode("only listed", 0444);
    const auto answer = [&] {
        const auto entries = readDetailedDirectory(home.path("only listed"));
        if (!entries)
            return entries.error().reason();
        return fmt::format("{} {}", entries->size(),
                           std::ranges::count_if(*entries, [](const DetailedEntry& entry) {
                               return entry.facts.has_value();
                           }));
    };
    EXPECT_EQ(test::asOrdinaryUser(answer), "2 0");
}

TEST(DirectoryTest, NamesMayHoldAnyByte) {
    const TempHome home;
    std::set<std::string> names{"\xff\xfe\x80", "line\nbreak", " ", "...", std::string(255, 'n')};
    for (const std::string& name : names)
        home.file("tree/" + name);
    std::set<std::string> listed;
    for (const DirectoryEntry& entry : entriesOf(home.path("tree")))
        listed.insert(entry.name);
    EXPECT_EQ(listed, names);
}

TEST(DirectoryTest, EmptyFolderHasNoEntries) {
    const TempHome home;
    EXPECT_TRUE(entriesOf(home.folder("empty")).empty());
}

TEST(DirectoryTest, LargeFolderIsListedWhole) {
    const TempHome memory(TempHome::Place::memory);
    const std::string folder = memory.folder("tree").path();
    std::set<std::string> names;
    for (int i = 0; i < 20'000; ++i) {
        names.insert(std::to_string(i));
        ASSERT_EQ(mknod(fmt::format("{}/{}", folder, i).c_str(), S_IFREG | 0644, 0), 0);
    }
    const std::vector<DirectoryEntry> entries = entriesOf(memory.path("tree"));
    EXPECT_EQ(entries.size(), names.size());
    for (const DirectoryEntry& entry : entries)
        names.erase(entry.name);
    EXPECT_TRUE(names.empty());
}

TEST(DirectoryTest, LinkToAFolderIsFollowed) {
    const TempHome home;
    home.file("folder/file");
    EXPECT_THAT(entriesOf(home.link("link", "folder")),
                UnorderedElementsAre(isEntry("file", FileKind::regular)));
}

TEST(DirectoryTest, WhatIsNoFolderIsAnErrorWithItsPlace) {
    const TempHome home;
    ASSERT_EQ(mkfifo(home.path("pipe").path().c_str(), 0644), 0);
    EXPECT_EQ(errorOf(home.path("missing")), ENOENT);
    EXPECT_EQ(errorOf(home.file("file")), ENOTDIR);
    EXPECT_EQ(errorOf(home.path("pipe")), ENOTDIR); // and is not waited for
    EXPECT_EQ(errorOf(home.link("nowhere", "missing")), ENOENT);
    EXPECT_EQ(errorOf(home.link("circle", "circle")), ELOOP);
    EXPECT_EQ(errorOf(URL()), ENOENT);
    const auto entries = readDirectory(home.path("missing"));
    ASSERT_FALSE(entries.has_value());
    EXPECT_EQ(entries.error().path, home.path("missing").path());
    EXPECT_EQ(entries.error().sentence(),
              "Could not list " + home.path("missing").path() + ": No such file or directory.");
}

TEST(DirectoryTest, OrdinaryUserListsWhatIsOpenToEverybody) {
    const TempHome home;
    home.setMode("", 0755);
    for (const char* name : {"open", "closed", "only entered", "only listed"}) {
        home.file(fmt::format("{}/file", name));
        home.folder(fmt::format("{}/folder", name));
    }
    home.setMode("closed", 0);
    home.setMode("only entered", 0111);
    home.setMode("only listed", 0444);
    const auto answer = [&] {
        std::string result;
        for (const char* name : {"open", "closed", "only entered", "only listed"}) {
            const auto entries = readDirectory(home.path(name));
            result += entries ? fmt::format("{} ", entries->size())
                              : fmt::format("{} ", entries.error().reason());
        }
        return result;
    };
    EXPECT_EQ(test::asOrdinaryUser(answer), "2 Permission denied Permission denied 2 ");
}

TEST(DirectoryTest, AccessTimeStaysAsItWas) {
    const TempHome home;
    home.file("folder/file", "x");
    home.link("link", "folder");
    const std::string path = home.path("folder").path();
    // Older than the last change, and so due for a new one at the next reading.
    constexpr std::array<timespec, 2> times{{{1'000'000'000, 0}, {1'100'000'000, 0}}};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times.data(), 0), 0);
    const auto accessed = [&] {
        struct stat status = {};
        stat(path.c_str(), &status);
        return status.st_atim.tv_sec;
    };
    EXPECT_EQ(entriesOf(home.path("folder")).size(), 1U);
    EXPECT_EQ(entriesOf(home.path("link")).size(), 1U);
    EXPECT_TRUE(readDetailedDirectory(home.path("folder")).has_value());
    EXPECT_EQ(accessed(), times[0].tv_sec);

    DIR* stream = opendir(path.c_str()); // does not take such care
    while (readdir(stream) != nullptr) {
    }
    closedir(stream);
    if (accessed() == times[0].tv_sec)
        GTEST_SKIP() << "this file system keeps no access times";
}

TEST(DirectoryTest, NothingIsLeftOpen) {
    const TempHome home;
    const auto openDescriptors = [] { return entriesOf(URL("/dev/fd")).size(); };
    const std::size_t before = openDescriptors();
    home.file("folder/file");
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(entriesOf(home.path("folder")).size(), 1U);
        EXPECT_EQ(errorOf(home.path("missing")), ENOENT);
        EXPECT_EQ(errorOf(home.path("folder/file")), ENOTDIR);
    }
    EXPECT_EQ(openDescriptors(), before);
}

} // namespace

} // namespace tidewright
