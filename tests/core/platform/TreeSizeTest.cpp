#include "core/platform/TreeSize.h"

#include "core/platform/Directory.h"
#include "core/platform/posix/FileDescriptor.h"
#include "tests/support/FtsOracle.h"
#include "tests/support/MountNamespace.h"
#include "tests/support/RandomTree.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <random>

namespace tidewright {

namespace {

using test::allocatedBytes;
using test::asOrdinaryUser;
using test::ftsTreeSize;
using test::RandomTree;
using test::TempHome;

constexpr std::uint64_t visitsPerCancelCheck = 8192;

Int64 treeSize(const URL& root, const CancelToken& cancel = CancelToken()) {
    SeenInodes seen;
    return allocatedTreeSize(root, seen, cancel);
}

CancelToken cancelledToken() {
    CancelSource source;
    source.cancel();
    return source.token();
}

std::size_t openDescriptors() {
    const auto entries = readDirectory(URL("/dev/fd"));
    return entries ? entries->size() : 0;
}

/// Every walk of these tests has to give back what it opened.
class TreeSizeTest : public testing::Test {
protected:
    ~TreeSizeTest() override { EXPECT_EQ(openDescriptors(), m_before); }

    TempHome home;
    TempHome memory{TempHome::Place::memory}; ///< for trees of many entries

private:
    std::size_t m_before = openDescriptors();
};

/// "equal", or both numbers: the answer of a child process.
std::string compared(const URL& root) {
    const Int64 ours = treeSize(root);
    const Int64 expected = ftsTreeSize(root);
    return ours == expected ? "equal" : fmt::format("{} instead of {}", ours, expected);
}

void makeFiles(const TempHome& home, const std::string& folder, std::uint64_t count) {
    const std::string path = home.folder(folder).path();
    const FileDescriptor parent(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    for (std::uint64_t i = 0; i < count; ++i)
        ASSERT_EQ(mknodat(parent.get(), fmt::format("file{}", i).c_str(), S_IFREG | 0644, 0), 0);
}

void makeFolders(const TempHome& home, const std::string& folder, std::uint64_t count) {
    for (std::uint64_t i = 0; i < count; ++i)
        home.folder(fmt::format("{}/{}", folder, i));
}

/// Folders one inside the other, each with files and folders beside the next one. That comes first
/// on every other level, so that some siblings are still to be visited on the way back whatever the
/// order in which a folder is read.
void makeWideChain(const TempHome& home, const std::string& top, int levels) {
    std::string folder = top;
    for (int level = 0; level < levels; ++level) {
        const std::string next =
            folder + fmt::format("/{}{}", static_cast<char>('a' + level % 26), level);
        if (level % 2 == 0)
            home.folder(next);
        home.file(folder + "/file", std::string(5000, 'x'));
        home.file(folder + "/a sibling/file", std::string(9000, 'x'));
        home.file(folder + "/z sibling/deeper/file", std::string(13000, 'x'));
        folder = next;
    }
    home.file(folder + "/end", std::string(100'000, 'x'));
}

std::string chain(int levels) {
    std::string path = "chain";
    for (int level = 0; level < levels; ++level)
        path += fmt::format("/level{}", level);
    return path;
}

class Limit {
public:
    explicit Limit(rlim_t descriptors) {
        getrlimit(RLIMIT_NOFILE, &m_before);
        const rlimit limit{descriptors, m_before.rlim_max};
        setrlimit(RLIMIT_NOFILE, &limit);
    }
    ~Limit() { setrlimit(RLIMIT_NOFILE, &m_before); }
    Limit(const Limit&) = delete;
    Limit& operator=(const Limit&) = delete;

private:
    rlimit m_before{};
};

TEST_F(TreeSizeTest, WalkToCompareWithCountsAKnownTree) {
    home.allocatedFile("tree/file", 65'536);
    home.hardLink("tree/the same file", "tree/file");
    home.allocatedFile("tree/folder/inner/file", 131'072);
    home.file("tree/folder/empty");
    home.link("tree/link", "folder");
    home.allocatedFile("outside", 1'048'576);
    home.link("tree/folder/link", "../../outside");

    const Int64 folders = allocatedBytes(home.path("tree")) +
                          allocatedBytes(home.path("tree/folder")) +
                          allocatedBytes(home.path("tree/folder/inner"));
    const Int64 links =
        allocatedBytes(home.path("tree/link")) + allocatedBytes(home.path("tree/folder/link"));
    SeenInodes seen;
    const test::FtsSum sum = ftsTreeSize(home.path("tree"), seen);
    EXPECT_EQ(sum.bytes, folders + links + 65'536 + 131'072);
    EXPECT_EQ(sum.visits, 3U * 2 + 6);
    EXPECT_EQ(seen.size(), 1U);
    EXPECT_EQ(treeSize(home.path("tree")), sum.bytes);
}

TEST_F(TreeSizeTest, RootThatIsMissingGivesNothing) {
    EXPECT_EQ(treeSize(home.path("missing")), 0);
    EXPECT_EQ(treeSize(URL()), 0);
    home.file("file", "x");
    EXPECT_EQ(treeSize(home.path("file/below a file")), 0);
}

TEST_F(TreeSizeTest, PathWithAZeroByteGivesNothing) {
    const URL file = home.allocatedFile("file", 65'536);
    EXPECT_EQ(treeSize(file), 65'536);
    EXPECT_EQ(treeSize(URL(file.path() + std::string("\0more", 5))), 0);
}

TEST_F(TreeSizeTest, FileAsRootGivesItsOwnSize) {
    const URL file = home.allocatedFile("file", 65'536);
    EXPECT_EQ(treeSize(file), 65'536);
    EXPECT_EQ(treeSize(URL(file.path() + "/")), ftsTreeSize(URL(file.path() + "/")));
}

TEST_F(TreeSizeTest, FileAsRootWithSeveralLinksCountsOnce) {
    const URL file = home.allocatedFile("file", 65'536);
    const URL other = home.hardLink("other", "file");
    SeenInodes seen;
    EXPECT_EQ(allocatedTreeSize(file, seen, CancelToken()), 65'536);
    EXPECT_EQ(allocatedTreeSize(other, seen, CancelToken()), 0);
    EXPECT_EQ(allocatedTreeSize(file, seen, CancelToken()), 0);
}

TEST_F(TreeSizeTest, LinkAsRootIsNotFollowed) {
    home.allocatedFile("folder/file", 1'048'576);
    const URL link = home.link("link", "folder");
    const URL longLink = home.link("long link", "./././././././././././././././././././././././././"
                                                "././././././././././././././././././folder");
    EXPECT_EQ(treeSize(link), allocatedBytes(link));
    EXPECT_LT(treeSize(link), 1'048'576);
    EXPECT_EQ(treeSize(longLink), allocatedBytes(longLink));
    EXPECT_EQ(treeSize(home.link("nowhere", "missing")), ftsTreeSize(home.path("nowhere")));
}

TEST_F(TreeSizeTest, LinkWithATrailingSlashAsRootIsItsFolder) {
    home.allocatedFile("folder/file", 1'048'576);
    const URL link(home.link("link", "folder").path() + "/");
    EXPECT_GE(treeSize(link), 1'048'576);
    EXPECT_EQ(treeSize(link), ftsTreeSize(link));
}

TEST_F(TreeSizeTest, RootMaySpellItsPathInAnyWay) {
    home.allocatedFile("folder/file", 65'536);
    const std::string path = home.path("folder").path();
    for (const std::string end : {"/", "//", "/.", "/../folder"}) {
        EXPECT_EQ(treeSize(URL(path + end)), treeSize(URL(path))) << end;
        EXPECT_EQ(treeSize(URL(path + end)), ftsTreeSize(URL(path + end))) << end;
    }
}

TEST_F(TreeSizeTest, SparseFileCountsWhatItHolds) {
    const URL sparse = home.file("tree/sparse", "begin");
    ASSERT_EQ(truncate(sparse.path().c_str(), 1'000'000'000), 0);
    EXPECT_LT(treeSize(sparse), 1'000'000);
    EXPECT_EQ(compared(home.path("tree")), "equal");
}

TEST_F(TreeSizeTest, FolderCountsItsOwnBlocks) {
    const URL empty = home.folder("empty");
    EXPECT_EQ(treeSize(empty), allocatedBytes(empty));
    EXPECT_EQ(treeSize(empty), ftsTreeSize(empty));
}

TEST_F(TreeSizeTest, LinksPipesAndSocketsAreCountedAndNeverOpened) {
    const std::string folder = home.folder("tree").path();
    home.allocatedFile("outside/file", 1'048'576);
    home.link("tree/to a folder outside", "../outside");
    home.link("tree/to the system", "/usr");
    home.link("tree/to itself", "to itself");
    home.link("tree/to its folder", ".");
    home.link("tree/nowhere", "missing");
    ASSERT_EQ(mkfifo((folder + "/pipe").c_str(), 0644), 0);
    ASSERT_EQ(mknod((folder + "/socket").c_str(), S_IFSOCK | 0644, 0), 0);
    home.hardLink("tree/the same pipe", "tree/pipe");
    home.hardLink("tree/the same link", "tree/nowhere");
    EXPECT_LT(treeSize(home.path("tree")), 1'048'576);
    EXPECT_EQ(compared(home.path("tree")), "equal");
}

TEST_F(TreeSizeTest, HardLinkedFileCountsAtItsFirstVisitAcrossRoots) {
    home.allocatedFile("a/file", 262'144);
    home.hardLink("a/again", "a/file");
    home.hardLink("b/deep/linked", "a/file");
    home.allocatedFile("b/own", 65'536);
    SeenInodes seen;
    SeenInodes expectedSeen;
    for (const char* root : {"a", "b", "a"}) {
        const URL url = home.path(root);
        EXPECT_EQ(allocatedTreeSize(url, seen, CancelToken()),
                  ftsTreeSize(url, expectedSeen).bytes);
    }
    EXPECT_EQ(seen, expectedSeen);
    EXPECT_EQ(allocatedTreeSize(home.path("b"), seen, CancelToken()),
              65'536 + allocatedBytes(home.path("b")) + allocatedBytes(home.path("b/deep")));
}

TEST_F(TreeSizeTest, NamesMayHoldAnyByte) {
    const std::string folder = home.folder("tree").path();
    for (const std::string name : {"\xff\xfe", "line\nbreak", " ", "...", "-rf", "*", "\x01\x7f"})
        home.allocatedFile("tree/" + name + "/" + name, 65'536);
    home.allocatedFile("tree/" + std::string(255, 'n'), 65'536);
    EXPECT_GE(treeSize(home.path("tree")), 8 * 65'536);
    EXPECT_EQ(compared(home.path("tree")), "equal");
}

TEST_F(TreeSizeTest, FolderOf100000EntriesIsCountedWhole) {
    makeFiles(memory, "tree", 100'000);
    memory.allocatedFile("tree/one with blocks", 65'536);
    EXPECT_GE(treeSize(memory.path("tree")), allocatedBytes(memory.path("tree")) + 65'536);
    EXPECT_EQ(compared(memory.path("tree")), "equal");
}

TEST_F(TreeSizeTest, LongChainIsCountedToItsEnd) {
    home.allocatedFile(chain(200) + "/file", 262'144);
    EXPECT_GE(treeSize(home.path("chain")), 262'144);
    EXPECT_EQ(compared(home.path("chain")), "equal");
}

TEST_F(TreeSizeTest, SiblingsOnAllLevelsAreCountedOnTheWayBack) {
    makeWideChain(memory, "tree", 120);
    EXPECT_GE(treeSize(memory.path("tree")), 120 * (5000 + 9000 + 13000) + 100'000);
    EXPECT_EQ(compared(memory.path("tree")), "equal");
}

TEST_F(TreeSizeTest, FewDescriptorsAreEnough) {
    makeWideChain(memory, "tree", 120);
    const Int64 expected = ftsTreeSize(memory.path("tree"));
    // A number is given to the next descriptor; those above it are free in this program.
    const FileDescriptor next(dup(STDIN_FILENO));
    const Limit limit(static_cast<rlim_t>(next.get()) + 40);
    EXPECT_EQ(treeSize(memory.path("tree")), expected);
}

TEST_F(TreeSizeTest, ChainBeyondThePathLimitIsCountedToItsEnd) {
    constexpr int levels = 5000;
    Int64 expected = 0;
    FileDescriptor folder(
        open(memory.folder("deep").path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const auto countFolder = [&] {
        struct stat status = {};
        ASSERT_EQ(fstat(folder.get(), &status), 0);
        expected += status.st_blocks * 512;
    };
    for (int level = 0; level < levels; ++level) {
        ASSERT_EQ(mkdirat(folder.get(), "ten.bytes.", 0755), 0) << std::strerror(errno);
        if (level % 50 == 0) {
            const FileDescriptor file(openat(folder.get(), "file", O_WRONLY | O_CREAT, 0644));
            ASSERT_EQ(posix_fallocate(file.get(), 0, 4096), 0);
            expected += 4096;
        }
        countFolder();
        folder = FileDescriptor(openat(folder.get(), "ten.bytes.", O_RDONLY | O_DIRECTORY));
    }
    countFolder();

    EXPECT_GE(expected, levels / 50 * 4096);
    EXPECT_EQ(treeSize(memory.path("deep")), expected);
    EXPECT_GE(treeSize(memory.path("deep")), ftsTreeSize(memory.path("deep")));
}

TEST_F(TreeSizeTest, ClosedFoldersAddNothingToAnOrdinaryUsersSum) {
    home.setMode("", 0755);
    home.allocatedFile("tree/open/file", 65'536);
    home.allocatedFile("tree/closed/file", 131'072);
    home.allocatedFile("tree/only entered/file", 262'144);
    home.allocatedFile("tree/only listed/file", 524'288);
    home.folder("tree/only listed/folder");
    home.setMode("tree/closed", 0);
    home.setMode("tree/only entered", 0111);
    home.setMode("tree/only listed", 0444);
    const Int64 expected = 65'536 + allocatedBytes(home.path("tree")) +
                           allocatedBytes(home.path("tree/open")) +
                           allocatedBytes(home.path("tree/only listed"));
    EXPECT_EQ(asOrdinaryUser([&] { return std::to_string(treeSize(home.path("tree"))); }),
              std::to_string(expected));
    EXPECT_EQ(asOrdinaryUser([&] { return compared(home.path("tree")); }), "equal");
}

TEST_F(TreeSizeTest, RootThatMayNotBeReadGivesNothing) {
    home.setMode("", 0755);
    home.allocatedFile("tree/file", 65'536);
    home.setMode("tree", 0);
    const auto answer = [&] {
        return fmt::format("{} {}", treeSize(home.path("tree")), compared(home.path("tree")));
    };
    EXPECT_EQ(asOrdinaryUser(answer), "0 equal");
}

TEST_F(TreeSizeTest, AnOrdinaryUserGetsBackUpFromDeepFoldersThatAreClosed) {
    memory.setMode("", 0755);
    makeWideChain(memory, "tree", 60);
    std::string folder = "tree";
    for (int level = 0; level < 60; ++level) {
        memory.setMode(folder + (level % 2 == 0 ? "/a sibling" : "/z sibling"),
                       level % 3 == 0 ? 0444 : 0);
        folder += fmt::format("/{}{}", static_cast<char>('a' + level % 26), level);
    }
    EXPECT_EQ(asOrdinaryUser([&] { return compared(memory.path("tree")); }), "equal");
}

// Both programs see the same tree: each item alone, and two roots with one set of seen files.
TEST_F(TreeSizeTest, RandomTreesGiveWhatTheOtherWalkGives) {
    std::vector<std::uint32_t> seeds{std::random_device()()};
    for (std::uint32_t seed = 1; seed <= 10; ++seed)
        seeds.push_back(seed);
    for (const std::uint32_t seed : seeds) {
        SCOPED_TRACE(fmt::format("the seed is {}", seed));
        const TempHome place(seed <= 9 ? TempHome::Place::memory : TempHome::Place::disk);
        place.setMode("", 0755);
        RandomTree tree(seed);
        tree.fill(place.folder("a"), 160);
        tree.fill(place.folder("b"), 60);
        tree.closeSomeFolders();
        SeenInodes seen;
        SeenInodes expectedSeen;
        for (const char* root : {"a", "b"}) {
            const URL url = place.path(root);
            EXPECT_EQ(treeSize(url), ftsTreeSize(url));
            EXPECT_EQ(allocatedTreeSize(url, seen, CancelToken()),
                      ftsTreeSize(url, expectedSeen).bytes);
            EXPECT_EQ(asOrdinaryUser([&] { return compared(url); }), "equal");
        }
        EXPECT_EQ(seen, expectedSeen);
        EXPECT_FALSE(seen.empty());
        EXPECT_EQ(compared(place.url()), "equal");
    }
}

TEST_F(TreeSizeTest, OtherFileSystemsInsideAreNotEntered) {
    const URL mounted = home.folder("tree/folder/memory");
    home.allocatedFile("tree/file", 65'536);
    home.file("tree/file to be covered");
    const auto answer = test::withOwnMounts([&]() -> std::string {
        if (!test::mountMemory(mounted))
            return "not mounted";
        home.allocatedFile("tree/folder/memory/file", 1'048'576);
        home.allocatedFile("tree/folder/memory/folder/file", 1'048'576);
        if (treeSize(mounted) < 2 * 1'048'576)
            return "as a root it is walked";
        if (treeSize(home.path("tree")) >= 1'048'576)
            return "it was entered";
        if (compared(home.path("tree")) != "equal" || compared(mounted) != "equal")
            return compared(home.path("tree"));
        // A single file of another file system is not a folder to be entered: it counts.
        if (!test::mountAgain(home.path("tree/folder/memory/file"),
                              home.path("tree/file to be covered")))
            return "the file was not mounted";
        return compared(home.path("tree"));
    });
    if (!answer)
        GTEST_SKIP() << test::mountsRefused;
    EXPECT_EQ(*answer, "equal");
}

TEST_F(TreeSizeTest, FolderMountedInsideItselfIsNotEnteredAgain) {
    home.allocatedFile("tree/file", 65'536);
    const URL inner = home.folder("tree/folder/inner");
    const auto answer = test::withOwnMounts([&]() -> std::string {
        const Int64 before = treeSize(home.path("tree"));
        if (!test::mountAgain(home.path("tree"), inner))
            return "not mounted";
        if (!readDirectory(inner) || readDirectory(inner)->size() != 2)
            return "the mount shows something else";
        // What stood below the mount is gone from the sum, and nothing came for it.
        const Int64 expected = before - allocatedBytes(home.path("tree/folder/inner/folder/inner"));
        if (treeSize(home.path("tree")) != expected)
            return fmt::format("{} after {}", treeSize(home.path("tree")), before);
        return compared(home.path("tree"));
    });
    if (!answer)
        GTEST_SKIP() << test::mountsRefused;
    EXPECT_EQ(*answer, "equal");
}

TEST_F(TreeSizeTest, FolderShownTwiceOnTheSameFileSystemCountsTwice) {
    makeWideChain(memory, "elsewhere", 50);
    memory.allocatedFile("tree/file", 65'536);
    memory.allocatedFile("tree/z/file", 65'536);
    const URL first = memory.folder("tree/first");
    const URL second = memory.folder("tree/z/second");
    const auto answer = test::withOwnMounts([&]() -> std::string {
        if (!test::mountAgain(memory.path("elsewhere"), first) ||
            !test::mountAgain(memory.path("elsewhere"), second))
            return "not mounted";
        if (treeSize(memory.path("tree")) < 2 * treeSize(memory.path("elsewhere")))
            return "it was not counted twice";
        return compared(memory.path("tree"));
    });
    if (!answer)
        GTEST_SKIP() << test::mountsRefused;
    EXPECT_EQ(*answer, "equal");
}

TEST_F(TreeSizeTest, AccessTimesStayAsTheyWere) {
    home.file("tree/folder/file", "x");
    home.link("tree/link", "folder");
    const auto accessed = [&](const char* path) {
        struct stat status = {};
        lstat(home.path(path).path().c_str(), &status);
        return status.st_atim.tv_sec;
    };
    // Older than the last change, and so due for a new one at the next reading.
    constexpr std::array<timespec, 2> times{{{1'000'000'000, 0}, {1'100'000'000, 0}}};
    const std::array paths{"tree", "tree/folder", "tree/folder/file", "tree/link"};
    for (const char* path : paths)
        utimensat(AT_FDCWD, home.path(path).path().c_str(), times.data(), AT_SYMLINK_NOFOLLOW);
    EXPECT_GT(treeSize(home.path("tree")), 0);
    for (const char* path : paths)
        EXPECT_EQ(accessed(path), times[0].tv_sec) << path;
    ftsTreeSize(home.path("tree")); // does not take such care
    if (accessed("tree/folder") == times[0].tv_sec)
        GTEST_SKIP() << "this file system keeps no access times";
}

TEST_F(TreeSizeTest, CancelledWalkOfFewVisitsReturnsTheWholeSum) {
    // The folder itself is visited twice, and there is one more file.
    makeFiles(memory, "tree", visitsPerCancelCheck - 1 - 3);
    memory.allocatedFile("tree/file with blocks", 65'536);
    const URL tree = memory.path("tree");
    SeenInodes seen;
    EXPECT_EQ(ftsTreeSize(tree, seen).visits, visitsPerCancelCheck - 1);
    EXPECT_EQ(treeSize(tree, cancelledToken()), ftsTreeSize(tree));
    EXPECT_GE(treeSize(tree), 65'536);
}

TEST_F(TreeSizeTest, FolderIsVisitedBeforeAndAfterWhatItHolds) {
    constexpr std::uint64_t folders = 10;
    makeFolders(home, "tree", folders);
    makeFiles(home, "tree/0", visitsPerCancelCheck - 2 * (folders + 1));
    const URL tree = home.path("tree");
    EXPECT_GT(allocatedBytes(tree), 0);
    // The last visit would add the folder's own blocks.
    EXPECT_EQ(treeSize(tree, cancelledToken()), treeSize(tree) - allocatedBytes(tree));
    ASSERT_EQ(rmdir((tree.path() + "/1").c_str()), 0);
    home.file("tree/one visit less");
    EXPECT_EQ(treeSize(tree, cancelledToken()), treeSize(tree));
}

TEST_F(TreeSizeTest, ClosedFolderIsVisitedTwiceAndWhatCantBeLookedAtOnce) {
    home.setMode("", 0755);
    const URL tree = home.folder("tree");
    home.folder("tree/closed/inner");
    makeFolders(home, "tree/only listed", 2);
    makeFiles(home, "tree/only listed", 2);
    makeFiles(home, "tree/files", visitsPerCancelCheck - 4 * 2 - 4);
    home.setMode("tree/closed", 0);
    home.setMode("tree/only listed", 0444);
    const auto answer = [&] {
        SeenInodes seen;
        return fmt::format("{} of {}, {} visits", treeSize(tree, cancelledToken()),
                           ftsTreeSize(tree, seen, cancelledToken()).bytes,
                           ftsTreeSize(tree, seen).visits);
    };
    // All but the last visit, with which the tree's own folder would be counted.
    const Int64 inner =
        allocatedBytes(home.path("tree/only listed")) + allocatedBytes(home.path("tree/files"));
    EXPECT_GT(allocatedBytes(tree), 0);
    EXPECT_EQ(asOrdinaryUser(answer),
              fmt::format("{} of {}, {} visits", inner, inner, visitsPerCancelCheck));
}

TEST_F(TreeSizeTest, CancelledWalkReturnsWhatItCountedBeforeItsCheck) {
    constexpr Int64 fileSize = 4096;
    for (std::uint64_t i = 0; i < visitsPerCancelCheck + 100; ++i)
        memory.allocatedFile(fmt::format("tree/{}", i), fileSize);
    const URL tree = memory.path("tree");
    // The folder's first visit and that of the check add nothing.
    const auto counted = static_cast<Int64>(visitsPerCancelCheck - 2);
    EXPECT_EQ(treeSize(tree, cancelledToken()), counted * fileSize);
    SeenInodes seen;
    EXPECT_EQ(ftsTreeSize(tree, seen, cancelledToken()).bytes, counted * fileSize);
}

} // namespace

} // namespace tidewright
