#include "core/platform/posix/FolderOpening.h"

#include "core/platform/Removal.h"
#include "tests/support/Removing.h"
#include "tests/support/Swapper.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

namespace tidewright {

namespace {

namespace fs = std::filesystem;
using test::namesUnder;
using test::outcome;
using test::TempHome;

/// A folder outside that is worth an attack: it has all the names that are removed elsewhere.
class FolderOpeningTest : public testing::Test {
protected:
    FolderOpeningTest() {
        for (const char* folder : {"", "item/", "item/a/", "item/b/", "a/", "b/"})
            for (const char* file : {"1", "2", "3"})
                canary.file(std::string(folder) + file, "precious");
        canary.snapshot();
        m_canary = canary.snapshot();
    }
    ~FolderOpeningTest() override { EXPECT_EQ(canary.snapshot(), m_canary); }

    /// Small trees, each in a folder of its own that can be swapped as well.
    void makeItem(const URL& folder) const {
        for (const char* inner : {"a", "b"}) {
            const fs::path path = folder.appending("item").appending(inner).path();
            fs::create_directories(path);
            for (const char* file : {"1", "2", "3"})
                mknod((path / file).c_str(), S_IFREG | 0644, 0);
        }
    }
    void makeLink(const URL& place, const URL& target) const {
        fs::create_directories(place.deletingLastPathComponent().path());
        EXPECT_EQ(symlink(target.path().c_str(), place.path().c_str()), 0);
    }
    TempHome home{TempHome::Place::memory};
    TempHome canary{TempHome::Place::memory};
    test::Swapper swapper;

private:
    std::string m_canary;
};

constexpr int manyItems = 2'100;

TEST_F(FolderOpeningTest, FoldersInsideSwappedForLinksLeadNowhere) {
    std::vector<URL> items;
    std::vector<test::Swapper::Target> targets;
    for (int i = 0; i < manyItems; ++i) {
        const URL folder = home.path(fmt::format("cache/{}", i));
        const URL item = folder.appending("item");
        makeItem(folder);
        makeLink(item.appending("to a"), canary.path("a"));
        makeLink(item.appending("to all"), canary.url());
        targets.push_back({{item.appending("a"), item.appending("to a")},
                           {item.appending("b"), item.appending("to all")}});
        items.push_back(item);
    }
    const auto approved = test::approvedPaths(home, items);
    swapper.attack(targets);
    for (std::size_t i = 0; i < approved.size(); ++i) {
        swapper.aim(i);
        removeOnce(approved[i]);
    }
    EXPECT_GE(swapper.rest(), 1U);
    for (const ApprovedPath& item : approved) {
        EXPECT_EQ(outcome(removeOnce(item)), "done");
        EXPECT_EQ(presence(item), Presence::gone);
    }
}

TEST_F(FolderOpeningTest, PermissionsAreNotGivenThroughSwappedLinks) {
    std::vector<URL> items;
    std::vector<test::Swapper::Target> targets;
    for (int i = 0; i < manyItems / 3; ++i) {
        const URL folder = home.path(fmt::format("cache/{}", i));
        const URL item = folder.appending("item");
        makeItem(folder);
        makeLink(item.appending("to a"), canary.path("a"));
        makeLink(item.appending("a/to file"), canary.path("1"));
        targets.push_back({{item.appending("a"), item.appending("to a")},
                           {item.appending("a/1"), item.appending("a/to file")}});
        items.push_back(item);
    }
    const auto approved = test::approvedPaths(home, items);
    swapper.attack(targets);
    for (std::size_t i = 0; i < approved.size(); ++i) {
        swapper.aim(i);
        makeWritable(approved[i]);
        containsAppBundle(approved[i]);
    }
    EXPECT_GE(swapper.rest(), 1U);
}

TEST_F(FolderOpeningTest, ParentSwappedForALinkLeadsNowhere) {
    std::vector<URL> items;
    std::vector<test::Swapper::Target> targets;
    for (int i = 0; i < manyItems / 3; ++i) {
        const URL parent = home.path(fmt::format("cache/{}", i));
        const URL link = home.path(fmt::format("links/{}", i));
        makeItem(parent);
        makeLink(link, canary.url());
        targets.push_back({{parent, link}});
        items.push_back(parent.appending("item"));
    }
    const PathPolicy policy(home.url(), home.path("temporary"), {}, {});
    swapper.attack(targets);
    for (std::size_t i = 0; i < items.size(); ++i) {
        swapper.aim(i);
        if (const auto approved = policy.validate(items[i], false)) // under attack already
            removeOnce(*approved);
    }
    EXPECT_GE(swapper.rest(), 1U);
}

TEST_F(FolderOpeningTest, ParentSwappedForAnotherFolderSavesWhatIsInThatOne) {
    std::vector<URL> items;
    std::vector<test::Swapper::Target> targets;
    for (int i = 0; i < manyItems / 3; ++i) {
        const URL parent = home.path(fmt::format("cache/{}", i));
        const URL other = home.path(fmt::format("others/{}", i));
        makeItem(parent);
        makeItem(other);
        targets.push_back({{parent, other}});
        items.push_back(parent.appending("item"));
    }
    const std::string others = namesUnder(home.path("others"));
    const auto approved = test::approvedPaths(home, items);
    swapper.attack(targets);
    for (std::size_t i = 0; i < approved.size(); ++i) {
        swapper.aim(i);
        removeOnce(approved[i]);
    }
    EXPECT_GE(swapper.rest(), 1U);
    EXPECT_EQ(namesUnder(home.path("others")), others);
}

TEST_F(FolderOpeningTest, ItemSwappedForALinkOrAnotherFolderSavesWhatThatOneHolds) {
    std::vector<URL> items;
    std::vector<test::Swapper::Target> targets;
    for (int i = 0; i < manyItems / 3; ++i) {
        const URL folder = home.path(fmt::format("cache/{}", i));
        const URL item = folder.appending("item");
        const URL other = folder.appending(i % 2 == 0 ? "other" : "link");
        makeItem(folder);
        if (i % 2 == 0)
            home.file(fmt::format("cache/{}/other/precious", i));
        else
            makeLink(other, canary.path("item"));
        targets.push_back({{item, other}});
        items.push_back(item);
    }
    const auto approved = test::approvedPaths(home, items);
    swapper.attack(targets);
    for (std::size_t i = 0; i < approved.size(); ++i) {
        swapper.aim(i);
        removeOnce(approved[i]);
    }
    EXPECT_GE(swapper.rest(), 1U);
    for (std::size_t i = 0; i < items.size(); i += 2) {
        // Whatever name it was left with.
        const std::string names = namesUnder(items[i].deletingLastPathComponent());
        EXPECT_NE(names.find("/precious"), std::string::npos) << names;
    }
}

} // namespace

} // namespace tidewright
