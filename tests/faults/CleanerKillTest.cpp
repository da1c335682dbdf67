// A cleanup that is killed at any moment: its log holds whole lines, and tells of every item that
// is gone but for those that were under way.
#include "core/cleaning/Cleaner.h"
#include "core/platform/Directory.h"
#include "core/platform/FileContents.h"
#include "core/support/Json.h"
#include "core/support/Text.h"
#include "tests/support/TempHome.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <random>
#include <set>

namespace tidewright {
namespace {

using test::TempHome;

constexpr int kills = 200;
constexpr int itemCount = 60;
constexpr std::size_t underWay = 3;
// Where the kernel may cut what a killed process was writing.
constexpr std::size_t pageBytes = 4096;

std::vector<ScanItem> makeItems(const TempHome& home) {
    std::vector<ScanItem> items;
    for (int i = 0; i < itemCount; ++i) {
        const std::string folder = fmt::format("cache/item {}", i);
        home.file(folder + "/one", "x");
        home.file(folder + "/below/two", "x");
        items.push_back(ScanItem::make({.ruleID = "test.rule",
                                        .title = folder,
                                        .urls = {home.path(folder)},
                                        .decision = Decision::clean,
                                        .method = CleanMethod::remove(),
                                        .idSuffix = std::to_string(i)}));
    }
    return items;
}

/// Cleans in a child process, which says when it begins, and kills that after the delay.
void cleanAndKill(const TempHome& home,
                  const std::vector<ScanItem>& items,
                  std::chrono::microseconds delay) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const Cleaner cleaner{.policy = PathPolicy(home.url(), home.path("tmp"), {}, {}),
                              .runner = {},
                              .logDirectory = home.path("logs"),
                              .needed = {},
                              .home = home.url()};
        bool hasBegun = false;
        cleaner.run(
            items,
            [&](const CleanEvent&) {
                if (!hasBegun && write(ends[1], "b", 1) != 1)
                    _exit(1);
                hasBegun = true;
            },
            CancelToken());
        _exit(0);
    }
    close(ends[1]);
    pollfd begins{ends[0], POLLIN, 0};
    ASSERT_EQ(poll(&begins, 1, 60'000), 1);
    close(ends[0]);
    usleep(static_cast<useconds_t>(delay.count()));
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
}

/// The ids of all items in the log; fails the test for what is no whole line.
std::set<std::string> loggedIDs(const TempHome& home) {
    std::set<std::string> ids;
    const auto logs = readDirectory(home.path("logs"));
    EXPECT_TRUE(logs && logs->size() == 1);
    if (!logs || logs->size() != 1)
        return ids;
    std::string text =
        readFile(home.path("logs").appending(logs->front().name), 10'000'000).value();
    if (!text.ends_with('\n')) {
        EXPECT_EQ(text.size() % pageBytes, 0U) << "cut where no kernel cuts: " << text;
        text.resize(text.rfind('\n') + 1);
    }
    for (const std::string& line : nonEmptyLines(text)) {
        const auto json = parseJson(line);
        EXPECT_TRUE(json && json->is_object()) << line;
        if (json && json->value("event", "") == "item")
            ids.insert(json->value("id", ""));
    }
    return ids;
}

TEST(CleanerKillTest, TheLogTellsOfAllThatIsGone) {
    std::mt19937 random(7);
    std::uniform_int_distribution<int> microseconds(0, 12'000);
    std::size_t killedInTheMiddle = 0;
    for (int i = 0; i < kills && !HasFailure(); ++i) {
        const TempHome home(TempHome::Place::memory);
        const std::vector<ScanItem> items = makeItems(home);
        cleanAndKill(home, items, std::chrono::microseconds(microseconds(random)));
        const std::set<std::string> logged = loggedIDs(home);
        std::size_t gone = 0;
        std::size_t untold = 0;
        for (const ScanItem& item : items) {
            const bool isThere = fileInfo(item.urls.front(), Links::dontFollow).has_value();
            gone += static_cast<std::size_t>(!isThere);
            untold += static_cast<std::size_t>(!isThere && !logged.contains(item.id));
            EXPECT_FALSE(isThere && logged.contains(item.id)) << item.id << " is told but there";
        }
        EXPECT_LE(untold, underWay);
        killedInTheMiddle += static_cast<std::size_t>(gone > 0 && gone < items.size());
    }
    EXPECT_GT(killedInTheMiddle, kills / 10U) << "most kills should hit a cleanup under way";
}

} // namespace
} // namespace tidewright
