#include "core/support/CancelToken.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace tidewright {
namespace {

using namespace std::chrono_literals;

TEST(CancelToken, IsCancelledOnceAndForAll) {
    CancelSource source;
    const CancelToken token = source.token();
    const CancelToken copy = token;
    EXPECT_FALSE(token.isCancelled());
    source.cancel();
    EXPECT_TRUE(token.isCancelled());
    EXPECT_TRUE(copy.isCancelled());
    EXPECT_TRUE(source.token().isCancelled());
    source.cancel();
    EXPECT_TRUE(token.isCancelled());
}

TEST(CancelToken, SourcesDoNotShare) {
    CancelSource one;
    CancelSource other;
    const CancelToken nobodys;
    one.cancel();
    EXPECT_FALSE(other.token().isCancelled());
    EXPECT_FALSE(nobodys.isCancelled());
}

TEST(CancelToken, OutlivesItsSource) {
    auto source = std::make_unique<CancelSource>();
    const CancelToken left = source->token();
    source.reset();
    EXPECT_FALSE(left.isCancelled());
    int runs = 0;
    const CancelCallback callback = left.onCancel([&] { ++runs; });
    EXPECT_EQ(runs, 0);
}

TEST(CancelCallback, RunsOnceOnTheThreadThatCancels) {
    CancelSource source;
    int runs = 0;
    std::thread::id runner;
    const CancelCallback callback = source.token().onCancel([&] {
        ++runs;
        runner = std::this_thread::get_id();
    });
    EXPECT_EQ(runs, 0);
    std::thread canceller([&] {
        source.cancel();
        source.cancel();
    });
    const std::thread::id cancellerID = canceller.get_id();
    canceller.join();
    source.cancel();
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(runner, cancellerID);
}

TEST(CancelCallback, RunsAtOnceWhenTheTokenIsCancelledAlready) {
    CancelSource source;
    source.cancel();
    int runs = 0;
    {
        const CancelCallback callback = source.token().onCancel([&] { ++runs; });
        EXPECT_EQ(runs, 1);
        source.cancel();
    }
    EXPECT_EQ(runs, 1);
}

TEST(CancelCallback, SeesTheTokenAsCancelled) {
    CancelSource source;
    const CancelToken token = source.token();
    bool seen = false;
    const CancelCallback callback = token.onCancel([&] { seen = token.isCancelled(); });
    source.cancel();
    EXPECT_TRUE(seen);
}

TEST(CancelCallback, AllOfATokensRun) {
    CancelSource source;
    int first = 0;
    int second = 0;
    const CancelCallback one = source.token().onCancel([&] { ++first; });
    const CancelCallback other = source.token().onCancel([&] { ++second; });
    source.cancel();
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
}

TEST(CancelCallback, NeverRunsAfterItsDestruction) {
    CancelSource source;
    int gone = 0;
    int left = 0;
    const CancelCallback stays = source.token().onCancel([&] { ++left; });
    {
        const CancelCallback leaves = source.token().onCancel([&] { ++gone; });
    }
    source.cancel();
    EXPECT_EQ(gone, 0);
    EXPECT_EQ(left, 1);
}

TEST(CancelCallback, ItsDestructionWaitsForARunningFunction) {
    CancelSource source;
    std::promise<void> entered;
    std::atomic<bool> ended = false;
    std::optional<CancelCallback> callback;
    // Filled in place: a callback is neither copied nor moved.
    struct Make {
        CancelToken token;
        std::function<void()> function;
        operator CancelCallback() const { return token.onCancel(function); }
    };
    callback.emplace(Make{source.token(), [&] {
                              entered.set_value();
                              std::this_thread::sleep_for(50ms);
                              ended = true;
                          }});
    std::thread canceller([&] { source.cancel(); });
    entered.get_future().wait();
    EXPECT_FALSE(ended);
    callback.reset();
    EXPECT_TRUE(ended);
    canceller.join();
}

TEST(CancelCallback, ComingAndGoingWhileSomebodyCancelsRunsEachAtMostOnce) {
    for (int round = 0; round < 200; ++round) {
        CancelSource source;
        std::atomic<bool> go = false;
        std::atomic<int> tooOften = 0;
        std::vector<std::thread> threads;
        for (int i = 0; i < 3; ++i)
            threads.emplace_back([&, token = source.token()] {
                while (!go)
                    std::this_thread::yield();
                for (int j = 0; j < 20; ++j) {
                    const auto runs = std::make_unique<std::atomic<int>>(0);
                    const bool before = token.isCancelled();
                    {
                        const CancelCallback callback = token.onCancel([&runs] { ++*runs; });
                    }
                    if (*runs > 1 || (before && *runs != 1))
                        ++tooOften;
                }
            });
        go = true;
        source.cancel();
        for (std::thread& thread : threads)
            thread.join();
        ASSERT_EQ(tooOften, 0);
    }
}

} // namespace
} // namespace tidewright
