#include "core/platform/Removal.h"

#include "core/platform/Directory.h"
#include "tests/support/CallHooks.h"
#include "tests/support/MountNamespace.h"
#include "tests/support/RandomTree.h"
#include "tests/support/Removing.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <filesystem>
#include <random>
#include <thread>

namespace tidewright {

namespace {

namespace fs = std::filesystem;
using test::approvedPath;
using test::asOrdinaryUser;
using test::namesUnder;
using test::outcome;
using test::TempHome;
using Kind = FileActionError::Kind;

std::size_t openDescriptors() {
    const auto entries = readDirectory(URL("/dev/fd"));
    return entries ? entries->size() : 0;
}

unsigned modeOf(const URL& url) {
    struct stat status = {};
    return lstat(url.path().c_str(), &status) == 0 ? status.st_mode & 07777U : 0U;
}

std::string failure(const char* kind, const URL& place, int error) {
    return fmt::format("{} {} ({})", kind, place.path(), std::generic_category().message(error));
}

/// Outside of the home there is a folder that must be as it was at the end of every test, and no
/// descriptor may be left open.
class RemovalTest : public testing::Test {
protected:
    RemovalTest() {
        home.setMode("", 0777);
        canary.setMode("", 0755);
        canary.file("file", "precious");
        canary.file("folder/deep/file", "precious");
        canary.file("read only/file", "precious");
        canary.link("link", "file");
        canary.setMode("read only/file", 0444);
        canary.setMode("read only", 0555);
        canary.snapshot(); // so that the access times are not due for a change
        m_canary = canary.snapshot();
    }
    ~RemovalTest() override {
        EXPECT_EQ(canary.snapshot(), m_canary);
        EXPECT_EQ(openDescriptors(), m_descriptors);
    }

    ApprovedPath approved(const char* item) const { return approvedPath(home, home.path(item)); }
    std::string removed(const char* item) const { return outcome(removeOnce(approved(item))); }
    bool isThere(const char* path) const {
        return fs::exists(fs::symlink_status(home.path(path).path()));
    }
    std::string pathOf(const char* path) const { return home.path(path).path(); }

private:
    std::size_t m_descriptors = openDescriptors();

protected:
    TempHome home;
    TempHome canary;

private:
    std::string m_canary;
};

TEST_F(RemovalTest, EveryKindOfItemIsRemovedAndItsNeighboursStay) {
    struct Case {
        const char* name;
        std::function<void(const std::string&)> make;
    };
    const auto file = [&](const std::string& path) { home.file(path, "contents"); };
    const std::array cases{
        Case{"file", file},
        Case{"empty", [&](const std::string& path) { home.file(path); }},
        Case{"folder", [&](const std::string& path) { home.folder(path); }},
        Case{"tree", [&](const std::string& path) { home.file(path + "/a/b/c", "x"); }},
        Case{"link", [&](const std::string& path) { home.link(path, "neighbour"); }},
        Case{"dangling", [&](const std::string& path) { home.link(path, "nothing"); }},
        Case{"loop", [&](const std::string& path) { home.link(path, "loop"); }},
        Case{"fifo", [&](const std::string& path) { mkfifo(pathOf(path.c_str()).c_str(), 0600); }},
        Case{"socket",
             [&](const std::string& path) { mknod(pathOf(path.c_str()).c_str(), S_IFSOCK, 0); }},
        Case{"\xff\xfe", file},
        Case{"line\nbreak", file},
        Case{" ", file},
        Case{"-rf", file},
        Case{"*", file},
        Case{"...", file},
        Case{"\x01\x7f", file},
    };
    home.file("cache/neighbour");
    for (const Case& each : cases) {
        const std::string item = std::string("cache/") + each.name;
        for (const std::string& place : {item, "tree/inner/" + std::string(each.name)})
            each.make(place);
        ASSERT_TRUE(isThere(item.c_str())) << each.name;
        EXPECT_EQ(presence(approved(item.c_str())), Presence::there) << each.name;
        EXPECT_EQ(removed(item.c_str()), "done") << each.name;
        EXPECT_FALSE(isThere(item.c_str())) << each.name;
        EXPECT_EQ(presence(approved(item.c_str())), Presence::gone) << each.name;
        EXPECT_EQ(namesUnder(home.path("cache")), "neighbour") << each.name;
    }
    // And all of them in one tree.
    EXPECT_EQ(removed("tree"), "done");
    EXPECT_FALSE(isThere("tree"));
}

TEST_F(RemovalTest, PathOf5000CharactersIsRemoved) {
    const std::string name(250, 'n');
    URL folder = home.folder("cache");
    int descriptor = open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int level = 0; level < 20; ++level) {
        ASSERT_EQ(mkdirat(descriptor, name.c_str(), 0755), 0);
        const int next = openat(descriptor, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        close(descriptor);
        descriptor = next;
        folder = folder.appending(name);
    }
    for (const char* each : {"item", "neighbour"}) {
        ASSERT_EQ(mkdirat(descriptor, each, 0755), 0);
        ASSERT_EQ(mknodat(descriptor, fmt::format("{}/file", each).c_str(), S_IFREG, 0), 0);
    }
    const ApprovedPath item = approvedPath(home, folder.appending("item"));
    EXPECT_EQ(presence(item), Presence::there);
    EXPECT_EQ(outcome(removeOnce(item)), "done");
    EXPECT_EQ(faccessat(descriptor, "item", F_OK, 0), -1);
    EXPECT_EQ(faccessat(descriptor, "neighbour/file", F_OK, 0), 0);
    EXPECT_EQ(presence(item), Presence::gone);
    close(descriptor);
}

TEST_F(RemovalTest, ItemThatIsGoneAlreadyIsASuccess) {
    home.file("cache/item");
    home.folder("other/folder/item");
    const ApprovedPath never = approved("cache/never");
    const ApprovedPath nowhere = approved("missing/folder/item");
    const ApprovedPath inFile = approved("cache/item/inner");
    const ApprovedPath item = approved("cache/item");
    const ApprovedPath withParent = approved("other/folder/item");
    fs::remove(pathOf("cache/item"));
    fs::remove_all(pathOf("other/folder"));
    for (const ApprovedPath& each : {never, nowhere, inFile, item, withParent}) {
        EXPECT_EQ(presence(each), Presence::gone) << each.url().path();
        EXPECT_EQ(outcome(removeOnce(each)), "done") << each.url().path();
        makeWritable(each);
        EXPECT_FALSE(containsAppBundle(each));
    }
}

TEST_F(RemovalTest, WhatCameToStandThereSinceIsLeftAlone) {
    const std::array kinds{"file", "folder", "link"};
    const auto make = [&](const std::string& kind, const std::string& path) {
        if (kind == "file")
            home.file(path, "other");
        else if (kind == "folder")
            home.file(path + "/file", "other");
        else
            home.link(path, canary.url().path());
    };
    for (const std::string before : {"nothing", "file", "folder", "link"}) {
        for (const std::string after : kinds) {
            SCOPED_TRACE(before + " became " + after);
            if (before != "nothing")
                make(before, "cache/item");
            const ApprovedPath item = approved("cache/item");
            if (before != "nothing")
                fs::rename(pathOf("cache/item"), pathOf("cache/kept")); // so its inode stays taken
            make(after, "cache/item");
            home.setMode(after == "folder" ? "cache/item/file" : "cache", 0755);
            const auto expected = failure("replaced", home.path("cache/item"), ESTALE);
            const std::string names = namesUnder(home.path("cache"));
            EXPECT_EQ(outcome(removeOnce(item)), expected);
            ASSERT_FALSE(presence(item));
            EXPECT_EQ(presence(item).error().kind, Kind::replaced);
            makeWritable(item);
            EXPECT_EQ(namesUnder(home.path("cache")), names);
            fs::remove_all(pathOf("cache"));
        }
    }
}

TEST_F(RemovalTest, ParentThatIsNoLongerWhatWasJudgedIsNotActedIn) {
    const auto replaceBy = [&](const char* what) {
        fs::rename(pathOf("cache"), pathOf("moved"));
        if (what == std::string("folder"))
            home.file("cache/file", "other");
        else if (what == std::string("link to another"))
            home.link("cache", canary.url().path());
        else if (what == std::string("link to itself"))
            home.link("cache", "moved");
        else if (what == std::string("file"))
            home.file("cache");
    };
    for (const char* what : {"nothing", "folder", "link to another", "link to itself", "file"}) {
        SCOPED_TRACE(what);
        home.file("cache/file", "judged");
        const ApprovedPath item = approved("cache/file");
        replaceBy(what);
        EXPECT_EQ(outcome(removeOnce(item)), failure("replaced", home.path("cache/file"), ESTALE));
        ASSERT_FALSE(presence(item));
        EXPECT_TRUE(isThere("moved/file"));
        fs::remove_all(pathOf("cache"));
        fs::remove_all(pathOf("moved"));
    }
}

TEST_F(RemovalTest, LinksAreRemovedFromEveryPositionAndNeverFollowed) {
    const std::string outside = canary.url().path();
    home.link("cache/is a link", outside + "/folder");
    home.link("cache/is a link to a file", outside + "/file");
    home.link("cache/item/to the folder", outside);
    home.link("cache/item/to the file", outside + "/read only/file");
    home.link("cache/item/deep/up", "../../../..");
    home.link("cache/item/chain", "deep/chain");
    home.link("cache/item/deep/chain", outside + "/link");
    home.link("cache/item/loop", "deep/loop");
    home.link("cache/item/deep/loop", "../loop");
    home.link("cache/item/itself", ".");
    home.folder("real");
    home.file("real/item/file");
    home.link("way", "real");
    home.file("neighbour");
    for (const char* item :
         {"cache/is a link", "cache/is a link to a file", "cache/item", "way/item"}) {
        makeWritable(approved(item));
        EXPECT_EQ(removed(item), "done");
    }
    EXPECT_EQ(namesUnder(home.url()), "cache neighbour real way");
}

TEST_F(RemovalTest, OtherNamesOfAHardLinkedFileKeepModeAndContents) {
    home.file("kept/file", "precious");
    home.setMode("kept/file", 0444);
    home.hardLink("cache/item/folder/file", "kept/file");
    home.setMode("cache/item/folder", 0555);
    for (const char* each : {"cache", "cache/item", "cache/item/folder"})
        ASSERT_EQ(chown(pathOf(each).c_str(), 65534, 65534), 0);
    ASSERT_EQ(chown(pathOf("kept/file").c_str(), 65534, 65534), 0);
    const auto answer = asOrdinaryUser([&] {
        const ApprovedPath item = approved("cache/item");
        const std::string first = outcome(removeOnce(item));
        makeWritable(item);
        return first + ", then " + outcome(removeOnce(item));
    });
    EXPECT_EQ(answer,
              failure("system", home.path("cache/item/folder/file"), EACCES) + ", then done");
    EXPECT_EQ(modeOf(home.path("kept/file")), 0444U);
    EXPECT_NE(home.snapshot().find("kept/file: precious"), std::string::npos);
}

TEST_F(RemovalTest, FirstObstacleIsReportedAndTheRestGoes) {
    home.file("cache/item/a");
    home.file("cache/item/deep/stuck");
    home.file("cache/item/deep/b");
    home.file("cache/item/deep/deeper/c");
    home.file("cache/item/z");
    test::CallHooks hooks;
    hooks.onUnlink = [](const std::string& name, int) { return name == "stuck" ? EIO : 0; };
    EXPECT_EQ(removed("cache/item"), failure("system", home.path("cache/item/deep/stuck"), EIO));
    hooks.onUnlink = nullptr;
    EXPECT_EQ(namesUnder(home.path("cache")), "item item/deep item/deep/stuck");
    EXPECT_EQ(removed("cache/item"), "done");
}

TEST_F(RemovalTest, FirstOfSeveralObstaclesIsTheError) {
    for (int i = 0; i < 20; ++i)
        home.file(fmt::format("cache/item/{}/stuck", i));
    test::CallHooks hooks;
    int failures = 0;
    hooks.onUnlink = [&](const std::string& name, int) {
        if (name != "stuck")
            return 0;
        return ++failures == 1 ? EIO : EBUSY;
    };
    const auto result = removeOnce(approved("cache/item"));
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().cause.code, EIO);
    EXPECT_EQ(failures, 20);
}

TEST_F(RemovalTest, FolderThatCantBeReadToItsEndIsAnError) {
    home.file("cache/item/folder/file");
    home.file("cache/item/other/file");
    test::CallHooks hooks;
    int readings = 0;
    hooks.onRead = [&](const dirent& entry) {
        return std::string(entry.d_name) == "file" && ++readings == 1 ? EIO : 0;
    };
    const auto result = removeOnce(approved("cache/item"));
    EXPECT_EQ(readings, 2);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().cause.code, EIO);
    hooks.onRead = nullptr;
    EXPECT_EQ(fs::path(result.error().cause.path).parent_path(), pathOf("cache/item"));
    EXPECT_TRUE(isThere("cache/item"));
    EXPECT_EQ(removed("cache/item"), "done");
}

TEST_F(RemovalTest, KindsThatAreNotToldAreFoundOut) {
    for (int i = 0; i < 3; ++i) {
        home.file(fmt::format("cache/item/{}/file", i));
        home.folder(fmt::format("cache/item/{}/empty", i));
        home.link(fmt::format("cache/item/{}/link", i), canary.url().path());
    }
    test::CallHooks hooks;
    int entries = 0;
    hooks.onRead = [&](dirent& entry) {
        ++entries;
        entry.d_type = DT_UNKNOWN;
        return 0;
    };
    EXPECT_EQ(removed("cache/item"), "done");
    EXPECT_GE(entries, 12);
}

// The same as the entry being changed between the moment it is read and the moment it is removed.
TEST_F(RemovalTest, KindsThatChangedMeanwhileAreFoundOut) {
    home.file("cache/item/file 1/inner/file");
    home.link("cache/item/file 2", canary.url().path());
    home.file("cache/item/folder 1");
    home.link("cache/item/folder 2", canary.url().path());
    test::CallHooks hooks;
    hooks.onRead = [&](dirent& entry) {
        const std::string name = entry.d_name;
        if (name.starts_with("file "))
            entry.d_type = DT_REG;
        if (name.starts_with("folder "))
            entry.d_type = DT_DIR;
        return 0;
    };
    EXPECT_EQ(removed("cache/item"), "done");
}

TEST_F(RemovalTest, FolderSwappedForALinkJustBeforeItIsEnteredLeadsNowhere) {
    home.file("cache/item/folder/file");
    home.folder("away");
    test::CallHooks hooks;
    hooks.onRead = [&](const dirent& entry) {
        if (std::string(entry.d_name) == "folder") {
            fs::rename(pathOf("cache/item/folder"), pathOf("away/folder"));
            home.link("cache/item/folder", canary.url().path());
        }
        return 0;
    };
    EXPECT_EQ(removed("cache/item"), "done");
    EXPECT_TRUE(isThere("away/folder/file"));
}

TEST_F(RemovalTest, FolderSwappedForALinkJustBeforeItIsRemovedLeadsNowhere) {
    home.file("cache/item/folder/file");
    home.folder("away");
    test::CallHooks hooks;
    hooks.onUnlink = [&](const std::string& name, int flags) {
        if (name == "folder" && flags == AT_REMOVEDIR) {
            fs::rename(pathOf("cache/item/folder"), pathOf("away/folder"));
            home.link("cache/item/folder", canary.url().path());
        }
        return 0;
    };
    EXPECT_EQ(removed("cache/item"), "done");
}

TEST_F(RemovalTest, ItemSwappedWhileItIsRemovedIsReportedAndTheOtherStays) {
    for (const bool byLink : {true, false}) {
        home.file("cache/item/file");
        home.file("cache/other/file");
        home.folder("away");
        test::CallHooks hooks;
        hooks.onUnlink = [&](const std::string& name, int flags) {
            if (name != "item" || flags != AT_REMOVEDIR || isThere("away/item"))
                return 0;
            fs::rename(pathOf("cache/item"), pathOf("away/item"));
            if (byLink)
                home.link("cache/item", "other");
            else
                fs::rename(pathOf("cache/other"), pathOf("cache/item"));
            return 0;
        };
        EXPECT_EQ(removed("cache/item"), failure("replaced", home.path("cache/item"), ESTALE));
        hooks.onUnlink = nullptr;
        EXPECT_TRUE(isThere("cache/item/file"));
        EXPECT_EQ(removed("cache/item"), "done");
        EXPECT_EQ(isThere("cache/other/file"), byLink);
        fs::remove_all(pathOf("away"));
    }
}

TEST_F(RemovalTest, EntryThatVanishesMeanwhileIsNoError) {
    home.file("cache/item/file");
    home.file("cache/item/folder/inner/file");
    home.file("cache/item/other/file");
    test::CallHooks hooks;
    hooks.onRead = [&](const dirent& entry) {
        const std::string name = entry.d_name;
        if (name == "file" || name == "folder")
            fs::remove_all(pathOf("cache/item") + "/" + name);
        return 0;
    };
    hooks.onUnlink = [&](const std::string& name, int) {
        if (name == "other")
            fs::remove_all(pathOf("cache/item/other"));
        return 0;
    };
    EXPECT_EQ(removed("cache/item"), "done");
    EXPECT_FALSE(isThere("cache/item"));
}

TEST_F(RemovalTest, InterruptedCallsAreTriedAgain) {
    home.file("cache/item/folder/file");
    int calls = 0;
    test::CallHooks hooks;
    hooks.onUnlink = [&](const std::string&, int) { return ++calls % 3 != 0 ? EINTR : 0; };
    EXPECT_EQ(removed("cache/item"), "done");
    EXPECT_EQ(calls, 9);
}

TEST_F(RemovalTest, RefilledFolderIsReadAgainAndRemoved) {
    home.file("cache/item/folder/file");
    int refills = 0;
    test::CallHooks hooks;
    hooks.onUnlink = [&](const std::string& name, int flags) {
        if (flags == AT_REMOVEDIR && name == "folder" && refills < 20)
            home.file(fmt::format("cache/item/folder/inner/{}", ++refills));
        return 0;
    };
    EXPECT_EQ(removed("cache/item"), "done");
    EXPECT_EQ(refills, 20);
    EXPECT_FALSE(isThere("cache/item"));
}

TEST_F(RemovalTest, FolderThatIsRefilledForEverIsGivenUp) {
    for (const char* refilled : {"item", "folder"}) {
        home.file("cache/item/folder/file");
        home.file("cache/item/other");
        int refills = 0;
        test::CallHooks hooks;
        hooks.onUnlink = [&](const std::string& name, int flags) {
            if (flags == AT_REMOVEDIR && name == refilled)
                home.file(
                    fmt::format("cache/item/{}{}", name == "item" ? "" : "folder/", ++refills));
            return 0;
        };
        const URL place =
            home.path(refilled == std::string("item") ? "cache/item" : "cache/item/folder");
        EXPECT_EQ(removed("cache/item"), failure("system", place, ENOTEMPTY));
        hooks.onUnlink = nullptr;
        EXPECT_EQ(refills, 32);
        EXPECT_FALSE(isThere("cache/item/other"));
        EXPECT_EQ(removed("cache/item"), "done");
    }
}

// Each folder of the chain is refilled again and again: without a limit for all of them together
// the work would be multiplied with every level.
TEST_F(RemovalTest, RefillingOnManyLevelsComesToAnEnd) {
    const TempHome memory(TempHome::Place::memory);
    std::array<URL, 9> levels{memory.path("cache/item")};
    for (std::size_t level = 1; level < levels.size(); ++level)
        levels[level] = levels[level - 1].appending(std::to_string(level));
    fs::create_directories(levels.back().path());
    int refills = 0;
    std::array<int, 9> removals{};
    test::CallHooks hooks;
    hooks.onUnlink = [&](const std::string& name, int flags) {
        const std::size_t level = name == "item" ? 0 : std::stoul(name);
        if (flags != AT_REMOVEDIR || level == 8 || ++removals[level] % 30 == 0)
            return 0;
        refills += mkdir(levels[level + 1].path().c_str(), 0755) == 0 ? 1 : 0;
        return 0;
    };
    const auto result = removeOnce(approvedPath(memory, levels.front()));
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().cause.code, ENOTEMPTY);
    EXPECT_GE(refills, 10'000);
    EXPECT_LE(refills, 10'100);
}

TEST_F(RemovalTest, TreeThatAThreadKeepsFillingEndsOneWayOrTheOther) {
    for (int round = 0; round < 6; ++round) {
        const TempHome memory(round == 0 ? TempHome::Place::disk : TempHome::Place::memory);
        const URL item = memory.file("cache/item/a/b/file").deletingLastPathComponent();
        std::atomic<bool> isOver = false;
        std::thread filler([&isOver, folder = item.path()] {
            for (int i = 0; !isOver; ++i) {
                const std::string path = fmt::format("{}/{}", folder, i);
                mknod(path.c_str(), S_IFREG | 0644, 0);
                mkdir((path + "folder").c_str(), 0755);
                if (i % 3 == 0)
                    mknod((path + "folder/inner").c_str(), S_IFREG | 0644, 0);
            }
        });
        const ApprovedPath top = approvedPath(memory, memory.path("cache/item"));
        const auto result = removeOnce(top);
        const bool isGone = presence(top) == Presence::gone;
        isOver = true;
        filler.join();
        EXPECT_EQ(result.has_value(), isGone);
        if (!result) {
            EXPECT_EQ(result.error().cause.code, ENOTEMPTY);
        }
    }
}

/// A few, and one that nobody has tried yet.
std::vector<std::uint32_t> seeds() {
    std::vector<std::uint32_t> result{std::random_device()()};
    for (std::uint32_t seed = 1; seed <= 8; ++seed)
        result.push_back(seed);
    return result;
}

// The trees hold links to the system's own folders: an ordinary user could do no harm there.
TEST_F(RemovalTest, RandomTreesAreRemovedWholly) {
    for (const std::uint32_t seed : seeds()) {
        SCOPED_TRACE(fmt::format("the seed is {}", seed));
        const TempHome place(seed <= 6 ? TempHome::Place::memory : TempHome::Place::disk);
        place.setMode("", 0777);
        const auto answer = asOrdinaryUser([&] {
            place.file("cache/neighbour");
            test::RandomTree(seed).fill(place.folder("cache/item"), 250);
            return outcome(removeOnce(approvedPath(place, place.path("cache/item"))));
        });
        EXPECT_EQ(answer, "done");
        EXPECT_EQ(namesUnder(place.url()), "cache cache/neighbour");
    }
}

TEST_F(RemovalTest, RandomTreesWithClosedFoldersGoAtTheSecondAttempt) {
    for (const std::uint32_t seed : seeds()) {
        SCOPED_TRACE(fmt::format("the seed is {}", seed));
        const TempHome place(TempHome::Place::memory);
        place.setMode("", 0777);
        const auto answer = asOrdinaryUser([&] {
            test::RandomTree tree(seed);
            tree.fill(place.folder("cache/item"), 250);
            place.file("cache/item/surely closed/file");
            place.setMode("cache/item/surely closed", 0);
            tree.closeSomeFolders();
            const ApprovedPath item = approvedPath(place, place.path("cache/item"));
            const auto first = removeOnce(item);
            makeWritable(item);
            return fmt::format("{}, then {}", first ? "done" : first.error().cause.reason(),
                               outcome(removeOnce(item)));
        });
        EXPECT_EQ(answer, "Permission denied, then done");
        EXPECT_EQ(namesUnder(place.url()), "cache");
    }
}

TEST_F(RemovalTest, ReadOnlyTreeGoesAtTheSecondAttempt) {
    const auto answer = asOrdinaryUser([&] {
        for (const char* module : {"a@v1", "b@v2", "b@v2/inner"}) {
            home.file(fmt::format("cache/mod/{}/file", module), "x");
            home.setMode(fmt::format("cache/mod/{}/file", module), 0444);
        }
        for (const char* folder : {"a@v1", "b@v2/inner", "b@v2", ""})
            home.setMode(fmt::format("cache/mod/{}", folder), 0555);
        const ApprovedPath item = approved("cache/mod");
        const auto first = removeOnce(item);
        if (first || first.error().cause.code != EACCES || !isThere("cache/mod/b@v2/inner/file"))
            return outcome(first);
        makeWritable(item);
        return outcome(removeOnce(item));
    });
    EXPECT_EQ(answer, "done");
    EXPECT_FALSE(isThere("cache/mod"));
}

TEST_F(RemovalTest, FoldersOfAnotherUserStayWithWhatTheyHold) {
    home.file("cache/item/own/file");
    home.file("cache/item/foreign/file");
    home.file("cache/item/foreign and closed/file");
    home.setMode("cache/item/foreign and closed", 0700);
    home.folder("cache/item/foreign, closed and empty");
    home.setMode("cache/item/foreign, closed and empty", 0700);
    for (const char* own : {"cache", "cache/item", "cache/item/own"})
        ASSERT_EQ(chown(pathOf(own).c_str(), 65534, 65534), 0);
    const auto answer = asOrdinaryUser([&] {
        const ApprovedPath item = approved("cache/item");
        const auto first = removeOnce(item);
        makeWritable(item);
        const auto second = removeOnce(item);
        if (first || second)
            return std::string("done");
        return fmt::format("{}, {}", first.error().cause.reason(), second.error().cause.reason());
    });
    EXPECT_EQ(answer, "Permission denied, Permission denied");
    EXPECT_EQ(namesUnder(home.path("cache")),
              "item item/foreign item/foreign and closed item/foreign and closed/file "
              "item/foreign/file");
    EXPECT_EQ(modeOf(home.path("cache/item/foreign")), 0755U);
}

TEST_F(RemovalTest, OthersFilesInAStickyFolderStay) {
    home.file("cache/item/sticky/foreign");
    home.file("cache/item/sticky/own");
    home.file("cache/item/other");
    for (const char* own : {"cache", "cache/item", "cache/item/sticky/own", "cache/item/other"})
        ASSERT_EQ(chown(pathOf(own).c_str(), 65534, 65534), 0);
    home.setMode("cache/item/sticky", 01777);
    EXPECT_EQ(asOrdinaryUser([&] { return removed("cache/item"); }),
              failure("system", home.path("cache/item/sticky/foreign"), EPERM));
    EXPECT_EQ(namesUnder(home.path("cache")), "item item/sticky item/sticky/foreign");
}

/// Sets or clears the flag that forbids every change; false where that is not allowed.
bool setImmutable(const URL& url, bool isImmutable) {
    const int file = open(url.path().c_str(), O_RDONLY | O_CLOEXEC);
    int flags = 0;
    bool isDone = ioctl(file, FS_IOC_GETFLAGS, &flags) == 0;
    flags = isImmutable ? flags | FS_IMMUTABLE_FL : flags & ~FS_IMMUTABLE_FL;
    isDone = isDone && ioctl(file, FS_IOC_SETFLAGS, &flags) == 0;
    close(file);
    return isDone;
}

class Immutable {
public:
    explicit Immutable(const URL& url) : m_url(url), m_isSet(setImmutable(url, true)) {}
    ~Immutable() { setImmutable(m_url, false); }
    Immutable(const Immutable&) = delete;
    Immutable& operator=(const Immutable&) = delete;
    explicit operator bool() const { return m_isSet; }

private:
    URL m_url;
    bool m_isSet;
};

TEST_F(RemovalTest, ImmutableFileStaysAndTheRestGoes) {
    const URL stuck = home.file("cache/item/folder/stuck", "x");
    home.setMode("cache/item/folder/stuck", 0400);
    home.file("cache/item/folder/other");
    home.file("cache/item/file");
    const Immutable immutable(stuck);
    if (!immutable)
        GTEST_SKIP() << "no file can be made immutable here";
    const ApprovedPath item = approved("cache/item");
    EXPECT_EQ(outcome(removeOnce(item)), failure("system", stuck, EPERM));
    makeWritable(item);
    EXPECT_EQ(modeOf(stuck), 0400U);
    EXPECT_EQ(outcome(removeOnce(item)), failure("system", stuck, EPERM));
    EXPECT_EQ(namesUnder(home.path("cache")), "item item/folder item/folder/stuck");
    EXPECT_EQ(removed("cache/item/folder/stuck"), failure("system", stuck, EPERM));
}

TEST_F(RemovalTest, ImmutableFolderStaysWithWhatItHolds) {
    home.file("cache/item/stuck/file");
    home.file("cache/item/file");
    const Immutable immutable(home.path("cache/item/stuck"));
    if (!immutable)
        GTEST_SKIP() << "no folder can be made immutable here";
    EXPECT_EQ(removed("cache/item"), failure("system", home.path("cache/item/stuck/file"), EPERM));
    EXPECT_EQ(namesUnder(home.path("cache")), "item item/stuck item/stuck/file");
}

TEST_F(RemovalTest, NobodyCanTellIsNoSuccess) {
    const auto answer = asOrdinaryUser([&] {
        home.file("closed/cache/item");
        const ApprovedPath before = approved("closed/cache/item");
        home.setMode("closed", 0);
        const auto there = presence(before);
        const std::string first = outcome(removeOnce(before));
        home.setMode("closed", 0755);
        if (there || !isThere("closed/cache/item"))
            return std::string("told, or removed");
        // The folder may be listed, but what is in it may not be looked at.
        home.setMode("closed/cache", 0444);
        const ApprovedPath judgedSo = approved("closed/cache/item");
        const std::string second = outcome(removeOnce(judgedSo));
        const std::string third = outcome(removeOnce(before));
        home.setMode("closed/cache", 0755);
        return fmt::format("{}\n{}\n{}", first, second, third);
    });
    const std::string closed = failure("system", home.path("closed/cache"), EACCES);
    EXPECT_EQ(answer, closed + "\n" + closed + "\n" +
                          failure("system", home.path("closed/cache/item"), EACCES));
    EXPECT_TRUE(isThere("closed/cache/item"));
}

TEST_F(RemovalTest, MountsInsideAreLeftAloneAndReported) {
    home.file("cache/item/a/file");
    home.file("cache/item/z/file");
    const URL folder = home.folder("cache/item/m/mounted");
    const URL file = home.file("cache/item/m/mounted file");
    struct Case {
        const char* kind;
        URL existing; ///< none for a fresh file system
        URL place;
        int error;
    };
    const std::array cases{
        Case{"mounted", canary.url(), folder, EXDEV},
        Case{"mounted", canary.path("read only"), folder, EXDEV},
        Case{"mounted", home.folder("elsewhere/same disk"), folder, EXDEV},
        Case{"mounted", URL(), folder, EXDEV},
        Case{"system", canary.path("read only/file"), file, EBUSY},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.existing.path());
        for (const char* path : {"cache/item/a/file", "cache/item/z/file"})
            home.file(path);
        home.folder("cache/item/m/mounted");
        home.file("cache/item/m/mounted file");
        const auto answer = test::withOwnMounts([&]() -> std::string {
            if (each.existing.path().empty() ? !test::mountMemory(each.place)
                                             : !test::mountAgain(each.existing, each.place))
                return "not mounted";
            if (each.existing.path().empty())
                home.file("cache/item/m/mounted/file", "precious");
            const unsigned mode = modeOf(each.place);
            const ApprovedPath item = approved("cache/item");
            const std::string first = outcome(removeOnce(item));
            makeWritable(item);
            const std::string second = outcome(removeOnce(item));
            if (first != second || modeOf(each.place) != mode)
                return first + ", then " + second;
            if (each.existing.path().empty() && !isThere("cache/item/m/mounted/file"))
                return "it was emptied";
            if (containsAppBundle(item))
                return "a bundle";
            return first;
        });
        if (!answer)
            GTEST_SKIP() << test::mountsRefused;
        EXPECT_EQ(*answer, failure(each.kind, each.place, each.error));
        EXPECT_EQ(namesUnder(home.path("cache/item")),
                  each.place == folder ? "m m/mounted" : "m m/mounted file");
    }
}

TEST_F(RemovalTest, ItemThatIsAMountIsLeftAlone) {
    const URL folder = home.folder("cache/item");
    const URL file = home.file("cache/file");
    home.file("same disk/file", "precious");
    const std::array<std::pair<URL, URL>, 4> cases{{
        {canary.url(), folder},
        {home.path("same disk"), folder},
        {URL(), folder},
        {canary.path("read only/file"), file},
    }};
    for (const auto& [existing, place] : cases) {
        const auto answer = test::withOwnMounts([&]() -> std::string {
            const ApprovedPath before = approvedPath(home, place);
            if (existing.path().empty() ? !test::mountMemory(place)
                                        : !test::mountAgain(existing, place))
                return "not mounted";
            if (existing.path().empty())
                home.file("cache/item/file", "precious");
            const ApprovedPath item = approvedPath(home, place);
            makeWritable(item);
            const std::string second = outcome(removeOnce(item));
            if (existing.path().empty() && !isThere("cache/item/file"))
                return "it was emptied";
            return outcome(removeOnce(before)) + "\n" + second;
        });
        if (!answer)
            GTEST_SKIP() << test::mountsRefused;
        EXPECT_EQ(*answer, failure("replaced", place, ESTALE) + "\n" +
                               (place == folder ? failure("mounted", place, EXDEV)
                                                : failure("system", place, EBUSY)));
    }
    EXPECT_EQ(namesUnder(home.url()), "cache cache/file cache/item same disk same disk/file");
}

TEST_F(RemovalTest, OwnersPermissionsAreAddedToEverythingButLinksAndSharedFiles) {
    struct Case {
        const char* path;
        unsigned before;
        unsigned after;
    };
    constexpr std::array cases{
        Case{"item/closed/deep", 0, 0700},
        Case{"item/closed/deep/file", 0, 0700},
        Case{"item/closed", 0, 0700},
        Case{"item/read only", 0444, 0744},
        Case{"item/special", 06055, 06755},
        Case{"item/sticky", 01070, 01770},
        Case{"item/sticky/file", 0644, 0744},
        Case{"item/shared", 0400, 0400},
        Case{"item", 0555, 0755},
        Case{"neighbour", 0400, 0400},
        Case{"neighbour folder", 0500, 0500},
    };
    for (const char* file : {"item/closed/deep/file", "item/read only", "item/special",
                             "item/sticky/file", "item/shared", "neighbour"})
        home.file(fmt::format("cache/{}", file));
    home.folder("cache/neighbour folder");
    home.hardLink("cache/the same", "cache/item/shared");
    home.link("cache/item/link", "../neighbour");
    home.link("cache/item/folder link", "../neighbour folder");
    home.link("cache/item/outside", canary.path("read only").path());
    ASSERT_EQ(mkfifo(pathOf("cache/item/fifo").c_str(), 0044), 0);
    for (const auto& entry : fs::recursive_directory_iterator(pathOf("cache")))
        ASSERT_EQ(lchown(entry.path().c_str(), 65534, 65534), 0);
    for (const Case& each : cases)
        home.setMode(fmt::format("cache/{}", each.path), each.before);
    EXPECT_EQ(asOrdinaryUser([&] {
                  makeWritable(approved("cache/item"));
                  return std::string();
              }),
              "");
    for (const Case& each : cases)
        EXPECT_EQ(modeOf(home.path(fmt::format("cache/{}", each.path))), each.after) << each.path;
    EXPECT_EQ(modeOf(home.path("cache/item/fifo")), 0744U);
    makeWritable(approved("cache/item/link"));
    makeWritable(approved("cache/item/outside"));
    EXPECT_EQ(modeOf(home.path("cache/neighbour")), 0400U);
}

TEST_F(RemovalTest, AppBundlesAreFoundByTheirExactExtension) {
    struct Case {
        const char* made; ///< a folder inside when it ends in a slash
        bool isFound;
    };
    constexpr std::array cases{
        Case{"x.app/", true},     Case{"x.app", true},          Case{"a/b/c/d/x.app/y", true},
        Case{"a.b.app/", true},   Case{"a/\xff.app/", true},    Case{"x.App/", false},
        Case{"x.apps/", false},   Case{".app/", false},         Case{"app/", false},
        Case{"x.app.txt", false}, Case{"a/b/Contents/", false}, Case{"line\nbreak.app/", true},
    };
    for (const Case& each : cases) {
        const std::string made = std::string("cache/item/") + each.made;
        if (made.ends_with('/'))
            home.folder(made);
        else
            home.file(made);
        EXPECT_EQ(containsAppBundle(approved("cache/item")), each.isFound) << each.made;
        fs::remove_all(pathOf("cache/item"));
    }
    home.file("cache/Some.app/file");
    home.file("cache/file.app");
    EXPECT_TRUE(containsAppBundle(approved("cache/Some.app")));
    EXPECT_TRUE(containsAppBundle(approved("cache/file.app")));
    EXPECT_TRUE(containsAppBundle(approved("cache/missing.app")));
    home.link("cache/link", "Some.app");
    EXPECT_FALSE(containsAppBundle(approved("cache/link")));
    home.link("cache/other/link", "..");
    EXPECT_FALSE(containsAppBundle(approved("cache/other")));
}

TEST_F(RemovalTest, UnreadableFoldersArePassedOverInTheSearchForBundles) {
    const auto answer = asOrdinaryUser([&] {
        home.folder("cache/item/closed/Hidden.app");
        home.setMode("cache/item/closed", 0);
        const bool before = containsAppBundle(approved("cache/item"));
        home.folder("cache/item/open/Shown.app");
        const bool after = containsAppBundle(approved("cache/item"));
        home.setMode("cache/item/closed", 0700);
        return fmt::format("{} {}", before, after);
    });
    EXPECT_EQ(answer, "false true");
}

} // namespace

} // namespace tidewright
