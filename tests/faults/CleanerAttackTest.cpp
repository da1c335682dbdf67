// Somebody who changes folders all the time while ten thousand items are cleaned.
#include "core/cleaning/Cleaner.h"
#include "core/support/Text.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/Swapper.h"
#include "tests/support/TempHome.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

using test::Swapper;
using test::TempHome;

constexpr int itemCount = test::underSanitizer ? 2'000 : 10'000;
constexpr int folderCount = 20;

/// A home of very many small items in a few folders, and a canary that must survive.
class CleanerAttackTest : public testing::Test {
protected:
    CleanerAttackTest() {
        for (int i = 0; i < itemCount; ++i) {
            const std::string path = fmt::format("cache/{}/item {}", i % folderCount, i);
            home.file(path + "/file", "x");
            // What a folder that was swapped for a link to the canary would offer.
            outside.file(fmt::format("item {}/file", i), "alive");
            items.push_back(ScanItem::make({.ruleID = "test.rule",
                                            .title = path,
                                            .urls = {home.path(path)},
                                            .decision = Decision::clean,
                                            .method = CleanMethod::remove(),
                                            .idSuffix = path}));
        }
        m_canary = canary();
    }

    /// Cleans all while the pairs are swapped, and returns how many items ended well.
    int cleanUnderAttack(const Swapper::Target& pairs) {
        const Cleaner cleaner{.policy = PathPolicy(home.url(), home.path("tmp"), {}, {}),
                              .runner = {},
                              .logDirectory = home.path("logs"),
                              .needed = {},
                              .home = home.url()};
        Swapper swapper;
        swapper.attack({pairs});
        int successes = 0;
        bool isComplete = false;
        cleaner.run(
            items,
            [&](const CleanEvent& event) {
                if (const auto* finished = std::get_if<CleanEvent::Finished>(&event.choice))
                    successes += static_cast<int>(finished->outcome.status.isSuccess());
                isComplete = std::holds_alternative<CleanEvent::Completed>(event.choice);
            },
            CancelToken());
        EXPECT_GT(swapper.rest(), 100U) << "there was an attack";
        EXPECT_TRUE(isComplete);
        EXPECT_EQ(canary(), m_canary) << "the canary is whole";
        return successes;
    }

    TempHome home{TempHome::Place::memory};
    TempHome outside{TempHome::Place::memory}; ///< the canary; nothing here may be touched
    std::vector<ScanItem> items;

    std::string canary() const {
        std::string files;
        for (int i = 0; i < itemCount; ++i) {
            const auto info =
                fileInfo(outside.path(fmt::format("item {}/file", i)), Links::dontFollow);
            files += info ? std::to_string(info->logicalBytes) : "gone";
        }
        return files;
    }

    std::string m_canary;
};

TEST_F(CleanerAttackTest, ParentsSwappedForLinksLeadNowhere) {
    Swapper::Target pairs;
    for (int i = 0; i < folderCount; ++i)
        pairs.emplace_back(home.path(fmt::format("cache/{}", i)),
                           home.link(fmt::format("trap/{}", i), outside.url().path()));
    const int successes = cleanUnderAttack(pairs);
    EXPECT_LT(successes, itemCount) << "some items have met the attack";
}

TEST_F(CleanerAttackTest, AFolderAboveThatIsSwappedForALinkLeadsNowhere) {
    for (int i = 0; i < folderCount; ++i)
        outside.link(std::to_string(i), outside.url().path());
    cleanUnderAttack({{home.path("cache"), home.link("trap", outside.url().path())}});
}

TEST_F(CleanerAttackTest, ItemsSwappedForLinksLeadNowhere) {
    Swapper::Target pairs;
    for (int i = 0; i < itemCount; i += 50)
        pairs.emplace_back(
            items[static_cast<std::size_t>(i)].urls.front(),
            home.link(fmt::format("trap/{}", i), outside.path(fmt::format("item {}", i)).path()));
    cleanUnderAttack(pairs);
}

} // namespace
} // namespace tidewright
