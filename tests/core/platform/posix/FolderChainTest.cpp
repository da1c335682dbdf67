#include "core/platform/posix/FolderChain.h"

#include "core/platform/Removal.h"
#include "tests/support/CallHooks.h"
#include "tests/support/ForkedAnswer.h"
#include "tests/support/Removing.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>

namespace tidewright {

namespace {

namespace fs = std::filesystem;
using test::approvedPath;
using test::asOrdinaryUser;
using test::forkedAnswer;
using test::outcome;
using test::TempHome;

bool asItIs() { return true; }

/// For use in a child process. Descriptors that are open already stay so.
bool allowDescriptors(rlim_t count) {
    const rlimit limit{count, count};
    return setrlimit(RLIMIT_NOFILE, &limit) == 0;
}

/// Kilobytes of this process, by the name of the line in /proc/self/status.
long kilobytes(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == name + ":") {
            long value = 0;
            status >> value;
            return value;
        }
    return -1;
}

/// By how many kilobytes the memory of this process grows at most during `work`.
long growth(const std::function<void()>& work) {
    std::ofstream("/proc/self/clear_refs") << "5"; // sets the peak to what is used now
    const long before = kilobytes("VmRSS");
    work();
    return kilobytes("VmHWM") - before;
}

constexpr long mostGrowth = 4'000; // in kilobytes

bool isLittle(long kilobytes) { return test::underSanitizer || kilobytes < mostGrowth; }

/// Folders one inside the other; calls `visit` with each, from the top on.
void makeChain(const URL& top,
               int levels,
               const std::function<void(const FileDescriptor&, int)>& visit) {
    fs::create_directories(top.path());
    FileDescriptor folder(open(top.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    for (int level = 0; level < levels; ++level) {
        visit(folder, level);
        mkdirat(folder.get(), "level", 0755);
        folder = FileDescriptor(openat(folder.get(), "level", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    }
    visit(folder, levels);
}

void makeFile(const FileDescriptor& folder, const char* name) {
    mknodat(folder.get(), name, S_IFREG | 0644, 0);
}

/// Its file goes when the folder has been opened, so not at the first attempt.
void makeClosedFolder(const FileDescriptor& folder, const std::string& name) {
    mkdirat(folder.get(), name.c_str(), 0755);
    makeFile(folder, (name + "/file").c_str());
    fchmodat(folder.get(), name.c_str(), 0, 0);
}

class FolderChainTest : public testing::Test {
protected:
    FolderChainTest() { memory.setMode("", 0777); }

    /// All that can be done to the item, one after the other, with how it ended.
    std::string removedInEveryWay() const {
        const auto act = [&](const ApprovedPath& each) {
            makeWritable(each);
            return (containsAppBundle(each) ? "bundle, " : "") + outcome(removeOnce(each));
        };
        // What is needed once counts as memory that is used already.
        memory.file("cache/small/folder/file");
        act(approvedPath(memory, memory.path("cache/small")));
        std::string result;
        const long grown = growth([&] { result = act(item()); });
        return isLittle(grown) ? result : fmt::format("{} with {} kB", result, grown);
    }
    ApprovedPath item() const { return approvedPath(memory, memory.path("cache/item")); }
    bool isItemThere() const { return fs::exists(memory.path("cache/item").path()); }

    TempHome memory{TempHome::Place::memory};
};

TEST_F(FolderChainTest, FolderOf100000FilesTakesLittleMemory) {
    const FileDescriptor folder(
        open(memory.folder("cache/item").path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    for (int i = 0; i < 100'000; ++i)
        makeFile(folder, fmt::format("a file with a name of some length {}", i).c_str());
    const auto answer = forkedAnswer(asItIs, [&] { return removedInEveryWay(); });
    EXPECT_EQ(answer, "done");
    EXPECT_FALSE(isItemThere());
}

TEST_F(FolderChainTest, ChainOf10000FoldersTakesFewDescriptorsAndLittleMemory) {
    makeChain(memory.path("cache/item"), 10'000, [](const FileDescriptor& folder, int level) {
        if (level % 10 == 0)
            makeFile(folder, "file");
        if (level % 100 == 0)
            mkdirat(folder.get(), "a sibling", 0755);
    });
    const auto answer = forkedAnswer(asItIs, [&] {
        const FileDescriptor next(dup(STDIN_FILENO));
        allowDescriptors(static_cast<rlim_t>(next.get()) + 36);
        return removedInEveryWay();
    });
    EXPECT_EQ(answer, "done");
    EXPECT_FALSE(isItemThere());
}

TEST_F(FolderChainTest, ObstacleAtTheEndOfALongChainIsReportedAndOvercome) {
    const auto answer = asOrdinaryUser([&] {
        makeChain(memory.path("cache/item"), 10'000, [](const FileDescriptor& folder, int level) {
            if (level == 9'990)
                makeClosedFolder(folder, "closed");
            makeFile(folder, "file");
        });
        const auto first = removeOnce(item());
        makeWritable(item());
        const std::string second = outcome(removeOnce(item()));
        if (first)
            return second;
        const std::string& path = first.error().cause.path;
        return fmt::format("{} {} {}, {}", first.error().cause.reason(),
                           path.size() - item().url().path().size(), path.substr(path.size() - 13),
                           second);
    });
    EXPECT_EQ(answer, fmt::format("Permission denied {} /level/closed, done", 9'990 * 6 + 7));
    EXPECT_FALSE(isItemThere());
}

/// In each folder of the chain, in front of the next one and behind it, some that go and some that
/// don't.
void makeThorns(const URL& top, int levels) {
    makeChain(top, levels, [](const FileDescriptor& folder, int level) {
        if (level % 2 == 0)
            mkdirat(folder.get(), "level", 0755); // so that it may be read before the others
        for (const std::string name : {"a", "k", "m", "z"}) {
            makeFile(folder, name.c_str());
            mkdirat(folder.get(), (name + " folder").c_str(), 0755);
            makeFile(folder, (name + " folder/file").c_str());
            makeClosedFolder(folder, fmt::format("{} closed {}", name, level));
        }
    });
}

bool isClosed(const std::string& name) { return name.find(" closed ") != std::string::npos; }

std::string namesThatShouldBeGone(const URL& top) {
    std::string result;
    for (const auto& entry : fs::recursive_directory_iterator(top.path())) {
        const std::string name = entry.path().filename().string();
        const std::string above = entry.path().parent_path().filename().string();
        if (name != "level" && !isClosed(above) && !isClosed(name))
            result += entry.path().string() + "\n";
    }
    return result;
}

TEST_F(FolderChainTest, ObstaclesOnAllLevelsKeepNothingElseAndNothingIsTriedForEver) {
    constexpr int levels = 150;
    const std::string answer = asOrdinaryUser([&] {
        makeThorns(memory.path("cache/item"), levels);
        std::map<std::string, int> tried;
        std::size_t read = 0;
        test::CallHooks hooks;
        hooks.onUnlink = [&](const std::string& name, int) {
            ++tried[name];
            return 0;
        };
        hooks.onRead = [&](const dirent&) {
            ++read;
            return 0;
        };
        const std::string result = outcome(removeOnce(item())).substr(0, 6);
        int most = 0;
        for (const auto& [name, times] : tried)
            if (isClosed(name))
                most = std::max(most, times);
        // 13 entries and ".", ".." in each folder, read twice at most; one folder with a file each.
        const std::size_t bound = (levels + 1) * (2 * 15 + 4 * 3);
        return fmt::format("{}, {} times, {}", result, most,
                           read <= bound ? "few reads" : fmt::format("{} reads", read));
    });
    EXPECT_EQ(answer, "system, 1 times, few reads");
    EXPECT_EQ(namesThatShouldBeGone(memory.path("cache/item")), "");
    EXPECT_EQ(asOrdinaryUser([&] {
                  makeWritable(item());
                  return outcome(removeOnce(item()));
              }),
              "done");
    EXPECT_FALSE(isItemThere());
}

TEST_F(FolderChainTest, SeveralDeepBranchesWithObstaclesAreAllCleared) {
    const std::string answer = asOrdinaryUser([&] {
        for (int branch = 0; branch < 12; ++branch)
            makeThorns(memory.path(fmt::format("cache/item/x/{} branch", branch)), 60);
        return outcome(removeOnce(item())).substr(0, 6);
    });
    EXPECT_EQ(answer, "system");
    const std::string left = namesThatShouldBeGone(memory.path("cache/item/x"));
    EXPECT_EQ(std::ranges::count(left, '\n'), 12) << left; // the branches themselves
    EXPECT_EQ(asOrdinaryUser([&] {
                  makeWritable(item());
                  return outcome(removeOnce(item()));
              }),
              "done");
}

TEST_F(FolderChainTest, BundleBehindDeepFoldersIsFoundOnTheWayBack) {
    for (const char* place : {"a", "z"}) {
        for (int level = 0; level < 100; level += 9) {
            const URL top = memory.path("cache/item");
            makeChain(top, 100, [&](const FileDescriptor& folder, int at) {
                if (at % 2 == 0)
                    mkdirat(folder.get(), "level", 0755);
                for (const char* name : {"a", "z"})
                    mkdirat(folder.get(), name, 0755);
                if (at == level)
                    mkdirat(folder.get(), fmt::format("{}/Some.app", place).c_str(), 0755);
            });
            EXPECT_TRUE(containsAppBundle(item())) << level;
            fs::remove_all(top.path());
        }
    }
}

TEST_F(FolderChainTest, FolderMovedAwayUnderADeepOneIsNotGoneBackTo) {
    makeChain(memory.path("cache/item"), 60,
              [](const FileDescriptor& folder, int) { makeFile(folder, "file"); });
    memory.file("precious/level/file");
    const std::string deep = [&] {
        std::string path = memory.path("cache/item").path();
        for (int level = 0; level < 20; ++level)
            path += "/level";
        return path;
    }();
    int removals = 0;
    test::CallHooks hooks;
    hooks.onUnlink = [&](const std::string& name, int flags) {
        // The way back leads into another folder from here on.
        if (name == "level" && flags == AT_REMOVEDIR && ++removals == 5)
            fs::rename(deep, memory.path("precious/moved").path());
        return 0;
    };
    const auto result = removeOnce(item());
    hooks.onUnlink = nullptr;
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().kind, FileActionError::Kind::replaced);
    EXPECT_EQ(result.error().cause.path, memory.path("cache/item").path());
    EXPECT_TRUE(fs::exists(memory.path("precious/level/file").path()));
    EXPECT_TRUE(isItemThere());
    EXPECT_EQ(outcome(removeOnce(item())), "done");
}

TEST_F(FolderChainTest, ManyFoldersJudgedTogetherNeedFewDescriptors) {
    const auto answer = forkedAnswer(asItIs, [&]() -> std::string {
        std::vector<URL> items;
        for (int i = 0; i < 3'000; ++i)
            items.push_back(
                memory.file(fmt::format("cache/{}/item/file", i)).deletingLastPathComponent());
        if (!allowDescriptors(64))
            return "no limit";
        const auto approved = test::approvedPaths(memory, items);
        for (const ApprovedPath& each : approved)
            if (const auto result = removeOnce(each); !result)
                return outcome(result);
        for (const ApprovedPath& each : approved)
            if (presence(each) != Presence::gone)
                return "not gone";
        return "done";
    });
    EXPECT_EQ(answer, "done");
    EXPECT_FALSE(fs::exists(memory.path("cache/2999/item").path()));
}

} // namespace

} // namespace tidewright
