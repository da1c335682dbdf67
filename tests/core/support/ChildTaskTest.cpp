#include "core/support/ChildTask.h"

#include "tests/support/Threads.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <barrier>
#include <chrono>
#include <future>
#include <iterator>
#include <memory>
#include <numeric>
#include <set>
#include <string>

namespace tidewright {
namespace {

using namespace std::chrono_literals;
TEST(ChildTask, RunsOnAThreadOfItsOwnAndHandsOverItsResult) {
    ChildTask<std::thread::id> task([] { return std::this_thread::get_id(); });
    EXPECT_NE(task.await(), std::this_thread::get_id());
}

TEST(ChildTask, ResultsNeedNotBeCopyable) {
    ChildTask<std::unique_ptr<int>> task([] { return std::make_unique<int>(7); });
    EXPECT_EQ(*task.await(), 7);
}

TEST(ChildTask, StartsWithoutBeingAwaited) {
    std::promise<void> started;
    ChildTask<bool> task([&] {
        started.set_value();
        return true;
    });
    EXPECT_EQ(started.get_future().wait_for(10s), std::future_status::ready);
}

TEST(ChildTask, IsJoinedAtTheEndOfItsScope) {
    std::atomic<bool> ended = false;
    {
        const ChildTask<bool> task([&] {
            std::this_thread::sleep_for(50ms);
            ended = true;
            return true;
        });
    }
    EXPECT_TRUE(ended);
}

TEST(ChildTaskDeathTest, ASecondAwaitStopsTheProgram) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            ChildTask<int> task([] { return 1; });
            task.await();
            task.await();
        },
        "a child task is awaited once");
}

struct Delivery {
    std::size_t index;
    std::size_t result;
    bool operator==(const Delivery&) const = default;
};

TEST(ForEachLimited, DeliversEachIndexWithItsResultOnceToTheOwnersThread) {
    struct Case {
        const char* name;
        std::size_t width;
        std::size_t count;
    };
    constexpr Case cases[] = {
        {"nothing to do", 4, 0},         {"one", 4, 1},
        {"one at a time", 1, 50},        {"some at a time", 4, 50},
        {"more width than work", 16, 3}, {"as much width as work", 5, 5},
    };
    for (const Case& each : cases) {
        std::vector<Delivery> deliveries;
        std::set<std::thread::id> owners;
        forEachLimited(
            each.width, each.count, CancelToken(), [](std::size_t index) { return index * index; },
            [&](std::size_t index, std::size_t result) {
                deliveries.push_back({index, result});
                owners.insert(std::this_thread::get_id());
            });
        std::ranges::sort(deliveries, {}, &Delivery::index);
        std::vector<Delivery> expected;
        for (std::size_t i = 0; i < each.count; ++i)
            expected.push_back({i, i * i});
        EXPECT_EQ(deliveries, expected) << each.name;
        owners.erase(std::this_thread::get_id());
        EXPECT_TRUE(owners.empty()) << each.name;
    }
}

TEST(ForEachLimited, OneAtATimeKeepsTheOrder) {
    std::vector<std::size_t> order;
    forEachLimited(
        1, 100, CancelToken(), [](std::size_t index) { return index; },
        [&](std::size_t, std::size_t result) { order.push_back(result); });
    std::vector<std::size_t> expected(100);
    std::iota(expected.begin(), expected.end(), std::size_t{0});
    EXPECT_EQ(order, expected);
}

TEST(ForEachLimited, DeliversInTheOrderOfCompletion) {
    // Index 0 ends only after all others have been delivered.
    std::promise<void> othersDelivered;
    std::vector<std::size_t> order;
    forEachLimited(
        2, 10, CancelToken(),
        [&](std::size_t index) {
            if (index == 0)
                othersDelivered.get_future().wait();
            return index;
        },
        [&](std::size_t index, std::size_t) {
            order.push_back(index);
            if (order.size() == 9)
                othersDelivered.set_value();
        });
    EXPECT_EQ(order, (std::vector<std::size_t>{1, 2, 3, 4, 5, 6, 7, 8, 9, 0}));
}

TEST(ForEachLimited, UsesItsWidthAndNeverMore) {
    constexpr std::size_t width = 3;
    std::atomic<std::size_t> running = 0;
    std::atomic<std::size_t> most = 0;
    std::barrier<> allRun(width);
    std::size_t delivered = 0;
    forEachLimited(
        width, 60, CancelToken(),
        [&](std::size_t index) {
            const std::size_t now = ++running;
            for (std::size_t seen = most; now > seen && !most.compare_exchange_weak(seen, now);) {
            }
            if (index < width)
                allRun.arrive_and_wait(); // comes to an end only if `width` run at a time
            std::this_thread::sleep_for(1ms);
            --running;
            return index;
        },
        [&](std::size_t, std::size_t) { ++delivered; });
    EXPECT_EQ(most, width);
    EXPECT_EQ(delivered, 60U);
}

TEST(ForEachLimited, StartsNothingWhenItIsCancelledBefore) {
    CancelSource source;
    source.cancel();
    std::atomic<int> started = 0;
    int delivered = 0;
    forEachLimited(
        4, 100, source.token(),
        [&](std::size_t) {
            ++started;
            return 0;
        },
        [&](std::size_t, int) { ++delivered; });
    EXPECT_EQ(started, 0);
    EXPECT_EQ(delivered, 0);
}

TEST(ForEachLimited, AfterACancellationOnlyWhatRunsIsDelivered) {
    constexpr std::size_t width = 3;
    CancelSource source;
    std::barrier<> allRun(width);
    std::atomic<int> started = 0;
    std::vector<std::size_t> delivered;
    forEachLimited(
        width, 100, source.token(),
        [&](std::size_t index) {
            ++started;
            allRun.arrive_and_wait();
            if (index == 1)
                source.cancel();
            while (!source.token().isCancelled())
                std::this_thread::yield();
            return index;
        },
        [&](std::size_t index, std::size_t) { delivered.push_back(index); });
    std::ranges::sort(delivered);
    EXPECT_EQ(started, 3);
    EXPECT_EQ(delivered, (std::vector<std::size_t>{0, 1, 2}));
}

TEST(ForEachLimited, TheOwnerMayCancelWhileItTakesAResult) {
    CancelSource source;
    std::promise<void> cancelled;
    std::vector<std::size_t> delivered;
    forEachLimited(
        1, 100, source.token(),
        [&](std::size_t index) {
            if (index == 1)
                cancelled.get_future().wait();
            return index;
        },
        [&](std::size_t index, std::size_t) {
            delivered.push_back(index);
            if (index == 0) {
                source.cancel();
                cancelled.set_value();
            }
        });
    // Index 1 may have been under way by then, index 2 not.
    EXPECT_LE(delivered.size(), 2U);
    EXPECT_EQ(delivered.front(), 0U);
}

TEST(ForEachLimited, LeavesNoThreadBehind) {
    const std::size_t before = test::threadsAtRest();
    std::atomic<std::size_t> during = 0;
    for (int round = 0; round < 20; ++round) {
        std::barrier<> allRun(8);
        forEachLimited(
            8, 8, CancelToken(),
            [&](std::size_t index) {
                allRun.arrive_and_wait();
                if (index == 0)
                    during = test::threadCount();
                allRun.arrive_and_wait();
                return index;
            },
            [](std::size_t, std::size_t) {});
        EXPECT_GE(during, before + 8);
    }
    EXPECT_TRUE(test::threadsFallTo(before)) << test::threadCount() << " and not " << before;
}

TEST(ForEachLimited, ResultsNeedNotBeCopyable) {
    int sum = 0;
    forEachLimited(
        2, 4, CancelToken(), [](std::size_t index) { return std::make_unique<int>(index); },
        [&](std::size_t, std::unique_ptr<int> result) { sum += *result; });
    EXPECT_EQ(sum, 6);
}

} // namespace
} // namespace tidewright
