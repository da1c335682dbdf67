#include "core/support/MainThread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace tidewright {
namespace {

/// Stands in for an event loop: takes functions from any thread, runs them when told to.
class Loop {
public:
    void post(std::function<void()> function) {
        const std::lock_guard lock(m_mutex);
        m_functions.push_back(std::move(function));
        m_arrived.notify_one();
    }

    void runOne() {
        std::unique_lock lock(m_mutex);
        m_arrived.wait(lock, [this] { return !m_functions.empty(); });
        const auto function = std::move(m_functions.front());
        m_functions.pop_front();
        lock.unlock();
        function();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_arrived;
    std::deque<std::function<void()>> m_functions;
};

TEST(MainThread, WithoutAScopeWorkRunsAtOnceOnTheCallingThread) {
    std::thread::id ran;
    runOnMainThread([&] { ran = std::this_thread::get_id(); });
    EXPECT_EQ(ran, std::this_thread::get_id());

    std::thread::id ranElsewhere;
    std::thread other([&] { runOnMainThread([&] { ranElsewhere = std::this_thread::get_id(); }); });
    const std::thread::id otherID = other.get_id();
    other.join();
    EXPECT_EQ(ranElsewhere, otherID);
}

TEST(MainThread, WorkFromElsewhereRunsOnTheMainThreadAndIsWaitedFor) {
    Loop loop;
    const MainThreadScope scope([&](std::function<void()> function) { loop.post(function); });
    std::thread::id ran;
    std::atomic<bool> finished = false;
    bool finishedBefore = true;
    bool doneAtReturn = false;
    std::thread other([&] {
        bool done = false;
        runOnMainThread([&] {
            ran = std::this_thread::get_id();
            finishedBefore = finished;
            done = true;
        });
        doneAtReturn = done;
        finished = true;
    });
    loop.runOne();
    other.join();
    EXPECT_EQ(ran, std::this_thread::get_id());
    EXPECT_FALSE(finishedBefore);
    EXPECT_TRUE(doneAtReturn);
}

TEST(MainThread, WorkFromTheMainThreadItselfIsNotPosted) {
    int posted = 0;
    const MainThreadScope scope([&](const std::function<void()>&) { ++posted; });
    bool ran = false;
    runOnMainThread([&] { ran = true; });
    EXPECT_TRUE(ran);
    EXPECT_EQ(posted, 0);
}

TEST(MainThread, AfterTheScopeWorkRunsWhereItIsAskedFor) {
    int posted = 0;
    {
        const MainThreadScope scope([&](const std::function<void()>&) { ++posted; });
    }
    bool ran = false;
    std::thread other([&] { runOnMainThread([&] { ran = true; }); });
    other.join();
    EXPECT_TRUE(ran);
    EXPECT_EQ(posted, 0);
}

TEST(MainThread, SeveralThreadsMayAskAtOnce) {
    Loop loop;
    const MainThreadScope scope([&](std::function<void()> function) { loop.post(function); });
    int count = 0; // touched by the main thread alone
    std::thread threads[4];
    for (std::thread& thread : threads)
        thread = std::thread([&] {
            for (int i = 0; i < 25; ++i)
                runOnMainThread([&] { ++count; });
        });
    for (int i = 0; i < 100; ++i)
        loop.runOne();
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(count, 100);
}

TEST(MainThreadDeathTest, ASecondScopeStopsTheProgram) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            const MainThreadScope one([](const std::function<void()>&) {});
            const MainThreadScope other([](const std::function<void()>&) {});
        },
        "there is one way to the main thread");
}

} // namespace
} // namespace tidewright
