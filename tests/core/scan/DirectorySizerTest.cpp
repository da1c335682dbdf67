#include "core/scan/DirectorySizer.h"

#include "core/platform/Directory.h"
#include "tests/support/FtsOracle.h"
#include "tests/support/MountNamespace.h"
#include "tests/support/RandomTree.h"
#include "tests/support/TempHome.h"
#include "tests/support/Threads.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <sys/stat.h>

#include <algorithm>
#include <thread>

namespace tidewright {

namespace {

using test::allocatedBytes;
using test::ftsTreeSize;
using test::TempHome;
using testing::Each;
using testing::ElementsAre;
using testing::Pair;

using Steps = std::vector<std::pair<std::size_t, std::size_t>>;

Int64 expectedSize(const std::vector<URL>& urls) {
    SeenInodes seen;
    Int64 sum = 0;
    for (const URL& url : urls)
        sum += ftsTreeSize(url, seen).bytes;
    return sum;
}

ScanItem item(std::vector<URL> urls, SizeSource source = SizeSource::measure()) {
    return ScanItem::make({.title = "an item", .urls = std::move(urls), .sizeSource = source});
}

std::vector<ScanItem> itemsOf(const URL& url, std::size_t count) {
    std::vector<ScanItem> items;
    for (std::size_t i = 0; i < count; ++i)
        items.push_back(item({url}));
    return items;
}

std::vector<Int64> sizesOf(const std::vector<ScanItem>& items) {
    std::vector<Int64> sizes;
    for (const ScanItem& each : items)
        sizes.push_back(each.sizeBytes);
    return sizes;
}

std::vector<ScanItem> measured(std::vector<ScanItem> items, int width = 6) {
    return DirectorySizer().measure(
        std::move(items), width, [](auto, auto) {}, CancelToken());
}

/// A tree whose walk takes a while, in memory. There are blocks to be counted to the very end,
/// from whichever side a folder is read.
URL makeLargeTree(const TempHome& memory) {
    for (int folder = 0; folder < 9; ++folder) {
        const std::string name = fmt::format("large/{}", folder);
        memory.allocatedFile(name + "/first", 4096);
        for (int file = 0; file < 1000; ++file)
            mknod(memory.path(fmt::format("{}/{}", name, file)).path().c_str(), S_IFREG | 0644, 0);
        memory.allocatedFile(name + "/last", 4096);
    }
    return memory.path("large");
}

TEST(DirectorySizerTest, SizeIsWhatTheOtherWalkGives) {
    const TempHome home;
    home.allocatedFile("tree/file", 65'536);
    home.allocatedFile("tree/folder/file", 131'072);
    const Int64 size = DirectorySizer().size(home.path("tree"));
    EXPECT_EQ(size, ftsTreeSize(home.path("tree")));
    EXPECT_EQ(size, 65'536 + 131'072 + allocatedBytes(home.path("tree")) +
                        allocatedBytes(home.path("tree/folder")));
}

TEST(DirectorySizerTest, FileWithTwoLinksInOneTreeCountsOnce) {
    const TempHome home;
    const URL tree = home.folder("tree");
    home.allocatedFile("tree/file", 1'048'576);
    home.hardLink("tree/deeper/link", "tree/file");
    EXPECT_EQ(DirectorySizer().size(tree),
              1'048'576 + allocatedBytes(tree) + allocatedBytes(home.path("tree/deeper")));
}

TEST(DirectorySizerTest, FileWithLinksFromTwoLocationsOfOneItemCountsOnce) {
    const TempHome home;
    home.allocatedFile("a/file", 1'048'576);
    home.hardLink("b/link", "a/file");
    const std::vector<URL> both{home.path("a"), home.path("b")};
    const Int64 expected = 1'048'576 + allocatedBytes(both[0]) + allocatedBytes(both[1]);
    EXPECT_EQ(DirectorySizer().size(both), expected);
    EXPECT_EQ(expectedSize(both), expected);
    EXPECT_THAT(sizesOf(measured({item(both)})), ElementsAre(expected));
}

TEST(DirectorySizerTest, FileWithLinksFromTwoItemsCountsOnceInEach) {
    const TempHome home;
    home.allocatedFile("a/file", 1'048'576);
    home.hardLink("b/link", "a/file");
    EXPECT_THAT(sizesOf(measured({item({home.path("a")}), item({home.path("b")})})),
                ElementsAre(1'048'576 + allocatedBytes(home.path("a")),
                            1'048'576 + allocatedBytes(home.path("b"))));
}

TEST(DirectorySizerTest, LocationThatIsListedTwiceCountsItsSimpleFilesTwice) {
    const TempHome home;
    home.allocatedFile("a/file", 65'536);
    home.allocatedFile("a/linked", 1'048'576);
    home.hardLink("elsewhere", "a/linked");
    const std::vector<URL> twice{home.path("a"), home.path("a")};
    EXPECT_EQ(DirectorySizer().size(twice),
              2 * (65'536 + allocatedBytes(home.path("a"))) + 1'048'576);
    EXPECT_EQ(DirectorySizer().size(twice), expectedSize(twice));
}

TEST(DirectorySizerTest, LinkToALargeFolderAddsItsOwnBlocksAlone) {
    const TempHome home;
    home.allocatedFile("large/file", 10'485'760);
    const URL tree = home.folder("tree");
    const URL link = home.link("tree/link", "../large");
    EXPECT_EQ(DirectorySizer().size(tree), allocatedBytes(tree) + allocatedBytes(link));
    EXPECT_EQ(DirectorySizer().size(link), allocatedBytes(link));
    EXPECT_LT(allocatedBytes(link), 10'485'760);
}

TEST(DirectorySizerTest, FileAsALocationGivesThatFilesSize) {
    const TempHome home;
    EXPECT_EQ(DirectorySizer().size(home.allocatedFile("file", 65'536)), 65'536);
}

TEST(DirectorySizerTest, EmptyFileAddsNothing) {
    const TempHome home;
    const URL tree = home.folder("tree");
    const Int64 before = DirectorySizer().size(tree);
    const URL file = home.file("tree/empty");
    EXPECT_EQ(DirectorySizer().size(file), 0);
    EXPECT_EQ(DirectorySizer().size(tree), before);
}

TEST(DirectorySizerTest, EmptyFolderGivesItsOwnBlocks) {
    const TempHome home;
    const URL folder = home.folder("empty");
    if (allocatedBytes(folder) == 0)
        GTEST_SKIP() << "folders take no blocks on this file system";
    EXPECT_EQ(DirectorySizer().size(folder), allocatedBytes(folder));
}

TEST(DirectorySizerTest, BundlesAndPackagesAreFoldersLikeOthers) {
    const TempHome home;
    home.allocatedFile("Some.app/Contents/MacOS/program", 1'048'576);
    EXPECT_GE(DirectorySizer().size(home.path("Some.app")), 1'048'576);
    EXPECT_EQ(DirectorySizer().size(home.path("Some.app")), ftsTreeSize(home.path("Some.app")));
}

TEST(DirectorySizerTest, NothingAtAllAndWhatIsMissingGiveNothing) {
    const TempHome home;
    EXPECT_EQ(DirectorySizer().size(home.path("missing")), 0);
    EXPECT_EQ(DirectorySizer().size(std::vector<URL>()), 0);
    EXPECT_THAT(sizesOf(measured({item({}), item({home.path("missing")})})), ElementsAre(0, 0));
}

TEST(DirectorySizerTest, UnreadableFoldersAreLeftOutOfTheSum) {
    const TempHome home;
    home.setMode("", 0755);
    home.allocatedFile("tree/open", 65'536);
    home.allocatedFile("tree/closed/file", 1'048'576);
    home.setMode("tree/closed", 0);
    const auto answer = [&] {
        return std::to_string(DirectorySizer().size(home.path("tree"))) + " " +
               std::to_string(DirectorySizer().size(home.path("tree/closed")));
    };
    EXPECT_EQ(test::asOrdinaryUser(answer),
              fmt::format("{} 0", 65'536 + allocatedBytes(home.path("tree"))));
}

TEST(DirectorySizerTest, MountInsideTheTreeIsNotEntered) {
    const TempHome home;
    home.allocatedFile("tree/file", 65'536);
    const URL mounted = home.folder("tree/mounted");
    const auto answer = test::withOwnMounts([&]() -> std::string {
        if (!test::mountMemory(mounted))
            return "not mounted";
        home.allocatedFile("tree/mounted/file", 10'485'760);
        return std::to_string(DirectorySizer().size(home.path("tree")) - allocatedBytes(mounted));
    });
    if (!answer)
        GTEST_SKIP() << test::mountsRefused;
    EXPECT_EQ(*answer, std::to_string(65'536 + allocatedBytes(home.path("tree"))));
}

TEST(DirectorySizerTest, SameInodeNumberOnTwoVolumesOfOneItemCountsOnce) {
    const TempHome home;
    home.folder("a");
    home.folder("b");
    const auto answer = test::withOwnMounts([&]() -> std::string {
        std::vector<URL> roots{home.path("a"), home.path("b")};
        for (const URL& root : roots) {
            if (!test::mountMemory(root))
                return "not mounted";
            home.allocatedFile(root.lastPathComponent() + "/file", 1'048'576);
            home.hardLink(root.lastPathComponent() + "/link", root.lastPathComponent() + "/file");
        }
        struct stat first = {};
        struct stat second = {};
        stat(home.path("a/file").path().c_str(), &first);
        stat(home.path("b/file").path().c_str(), &second);
        if (first.st_ino != second.st_ino)
            return "not the same number";
        return fmt::format("{} {}", DirectorySizer().size(roots), expectedSize(roots));
    });
    if (!answer)
        GTEST_SKIP() << test::mountsRefused;
    if (*answer == "not the same number")
        GTEST_SKIP() << "the two volumes number their files differently";
    EXPECT_EQ(*answer, "1048576 1048576");
}

TEST(DirectorySizerTest, RandomItemsGiveWhatTheOtherWalkGives) {
    for (const std::uint32_t seed : {11U, 12U, 13U}) {
        SCOPED_TRACE(fmt::format("the seed is {}", seed));
        const TempHome memory(TempHome::Place::memory);
        test::RandomTree tree(seed);
        std::vector<URL> roots;
        for (int i = 0; i < 6; ++i) {
            roots.push_back(memory.folder(std::to_string(i)));
            tree.fill(roots.back(), 60);
        }
        const std::vector<std::vector<URL>> lists{
            roots, {roots[0]}, {roots[5], roots[1]}, {roots[2], roots[2]}, {roots[4], roots[3]}};
        std::vector<ScanItem> items;
        std::vector<Int64> expected;
        for (const std::vector<URL>& urls : lists) {
            items.push_back(item(urls));
            expected.push_back(expectedSize(urls));
        }
        EXPECT_EQ(sizesOf(measured(items, 3)), expected);
    }
}

TEST(DirectorySizerTest, EveryCallWalksTheDiskAgain) {
    const TempHome home;
    const URL tree = home.folder("tree");
    const Int64 before = DirectorySizer().size(tree);
    home.allocatedFile("tree/file", 65'536);
    EXPECT_EQ(DirectorySizer().size(tree), before + 65'536);
}

TEST(DirectorySizerTest, MeasuringFillsInWhatIsToBeMeasuredAndLeavesKnownSizes) {
    const TempHome home;
    const URL a = home.allocatedFile("a", 65'536);
    const URL b = home.allocatedFile("b", 131'072);
    const std::vector<ScanItem> items{item({a}), item({a}, SizeSource::known(7)),
                                      item({}, SizeSource::known(0)), item({b, a})};
    const std::vector<ScanItem> result = measured(items);
    EXPECT_THAT(sizesOf(result), ElementsAre(65'536, 7, 0, 65'536 + 131'072));
    for (std::size_t i = 0; i < items.size(); ++i) {
        ScanItem expected = items[i];
        expected.sizeBytes = result[i].sizeBytes;
        EXPECT_EQ(result[i], expected) << "item " << i << " changed beyond its size";
    }
}

TEST(DirectorySizerTest, ProgressTellsOfEachMeasuredItemOnTheCallersThread) {
    const TempHome home;
    const URL file = home.allocatedFile("file", 4096);
    std::vector<ScanItem> items = itemsOf(file, 4);
    items.insert(items.begin() + 1, item({file}, SizeSource::known(1)));
    Steps steps;
    const auto caller = std::this_thread::get_id();
    const auto progress = [&](std::size_t done, std::size_t total) {
        EXPECT_EQ(std::this_thread::get_id(), caller);
        steps.emplace_back(done, total);
    };
    DirectorySizer().measure(items, 2, progress, CancelToken());
    EXPECT_THAT(steps, ElementsAre(Pair(1, 4), Pair(2, 4), Pair(3, 4), Pair(4, 4)));
}

TEST(DirectorySizerTest, WithNothingToMeasureNobodyStartsAndTheListComesBackAsItWas) {
    const std::vector<ScanItem> known{item({URL("/usr")}, SizeSource::known(5))};
    Steps steps;
    const auto progress = [&](std::size_t done, std::size_t total) {
        steps.emplace_back(done, total);
    };
    EXPECT_EQ(DirectorySizer().measure(known, 6, progress, CancelToken()), known);
    EXPECT_EQ(DirectorySizer().measure({}, 6, progress, CancelToken()), std::vector<ScanItem>());
    EXPECT_TRUE(steps.empty());
}

TEST(DirectorySizerTest, NoMoreWalksThanTheWidthRunAtATime) {
    const TempHome memory(TempHome::Place::memory);
    const URL tree = makeLargeTree(memory);
    const std::size_t before = test::threadsAtRest();
    std::vector<std::size_t> threads;
    const auto progress = [&](std::size_t, std::size_t) {
        threads.push_back(test::threadCount() - before);
    };
    const auto result = DirectorySizer().measure(itemsOf(tree, 24), 3, progress, CancelToken());
    EXPECT_THAT(sizesOf(result), Each(ftsTreeSize(tree)));
    EXPECT_EQ(threads.size(), 24U);
    EXPECT_EQ(threads.front(), 3U);
    EXPECT_LE(std::ranges::max(threads), 3U);
}

TEST(DirectorySizerTest, WidthBeyondTheItemsStartsAsManyAsThereAre) {
    const TempHome memory(TempHome::Place::memory);
    const URL tree = makeLargeTree(memory);
    const std::size_t before = test::threadsAtRest();
    std::size_t most = 0;
    const auto progress = [&](std::size_t, std::size_t) {
        most = std::max(most, test::threadCount() - before);
    };
    const auto result = DirectorySizer().measure(itemsOf(tree, 2), 100, progress, CancelToken());
    EXPECT_THAT(sizesOf(result), Each(ftsTreeSize(tree)));
    EXPECT_LE(most, 2U);
}

TEST(DirectorySizerTest, WidthOfNothingMeasuresNothing) {
    const TempHome home;
    const std::vector<ScanItem> items{item({home.allocatedFile("file", 4096)})};
    EXPECT_EQ(measured(items, 0), items);
}

TEST(DirectorySizerDeathTest, NegativeWidthStopsTheProgram) {
    EXPECT_DEATH(measured({}, -1), "not negative");
}

TEST(DirectorySizerTest, CancellationEndsTheWalksUnderWayAndStartsNoMore) {
    const TempHome memory(TempHome::Place::memory);
    const URL tree = makeLargeTree(memory);
    CancelSource source;
    std::size_t steps = 0;
    const auto progress = [&](std::size_t, std::size_t) {
        ++steps;
        source.cancel();
    };
    const auto result = DirectorySizer().measure(itemsOf(tree, 60), 2, progress, source.token());
    const std::vector<Int64> sizes = sizesOf(result);
    EXPECT_EQ(result.size(), 60U);
    EXPECT_GE(steps, 1U);
    EXPECT_LT(steps, 60U);
    EXPECT_EQ(sizes.back(), 0) << "the last item was measured";
    EXPECT_EQ(std::ranges::count_if(sizes, [](Int64 size) { return size > 0; }),
              static_cast<std::ptrdiff_t>(steps));
}

TEST(DirectorySizerTest, MeasuringAfterACancellationReturnsWithoutAWholeSum) {
    const TempHome memory(TempHome::Place::memory);
    const URL tree = makeLargeTree(memory);
    CancelSource source;
    source.cancel();
    const auto result = DirectorySizer().measure(
        itemsOf(tree, 8), 3, [](auto, auto) {}, source.token());
    EXPECT_THAT(sizesOf(result), Each(testing::Lt(ftsTreeSize(tree))));
}

TEST(DirectorySizerTest, SizeLooksAtTheToken) {
    const TempHome memory(TempHome::Place::memory);
    const URL tree = makeLargeTree(memory);
    CancelSource source;
    EXPECT_EQ(DirectorySizer().size(tree, source.token()), ftsTreeSize(tree));
    source.cancel();
    EXPECT_LT(DirectorySizer().size(tree, source.token()), ftsTreeSize(tree));
}

} // namespace

} // namespace tidewright
