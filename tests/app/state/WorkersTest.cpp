#include "app/state/Workers.h"

#include "tests/support/app/EventLoop.h"

#include <QObject>
#include <gmock/gmock.h>

namespace tidewright {
namespace {

using test::becomesTrue;
using test::runEventLoopOnce;
using testing::ElementsAre;

TEST(Workers, WorkRunsElsewhereAndComesBackToTheMainThread) {
    Workers workers;
    const auto here = std::this_thread::get_id();
    std::thread::id worked;
    std::thread::id delivered;
    workers.start([&] {
        worked = std::this_thread::get_id();
        workers.post([&] { delivered = std::this_thread::get_id(); });
    });
    ASSERT_TRUE(becomesTrue([&] { return delivered != std::thread::id(); }));
    EXPECT_NE(worked, here);
    EXPECT_EQ(delivered, here);
}

TEST(Workers, WhatIsSentIsRunInOrderAndNotAtOnce) {
    Workers workers;
    std::vector<int> order;
    for (int i = 0; i < 3; ++i)
        workers.post([&order, i] { order.push_back(i); });
    EXPECT_TRUE(order.empty());
    runEventLoopOnce();
    EXPECT_THAT(order, ElementsAre(0, 1, 2));
}

TEST(Workers, NothingIsDeliveredToWhatIsGone) {
    Workers workers;
    auto receiver = std::make_unique<QObject>();
    int heard = 0;
    workers.deliver<QObject>(receiver.get(), [&](QObject&) { ++heard; });
    runEventLoopOnce();
    EXPECT_EQ(heard, 1);
    workers.deliver<QObject>(receiver.get(), [&](QObject&) { ++heard; });
    receiver.reset();
    runEventLoopOnce();
    EXPECT_EQ(heard, 1);
}

TEST(Workers, TheEndWaitsForWorkAndServesIt) {
    bool isDone = false;
    bool askedOnMainThread = false;
    {
        Workers workers;
        workers.start([&, here = std::this_thread::get_id()] {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            // As a scan does; without somebody serving it this would never return.
            runOnMainThread([&] { askedOnMainThread = std::this_thread::get_id() == here; });
            isDone = true;
        });
    }
    EXPECT_TRUE(isDone);
    EXPECT_TRUE(askedOnMainThread);
}

TEST(Workers, WorkThatStartsWorkIsAwaitedToo) {
    bool isDone = false;
    {
        Workers workers;
        workers.start([&] { workers.post([&] { workers.start([&] { isDone = true; }); }); });
    }
    EXPECT_TRUE(isDone);
}

TEST(Workers, ThreadsThatEndedAreForgotten) {
    Workers workers;
    int ended = 0;
    for (int i = 0; i < 40; ++i) {
        workers.start([&] { workers.post([&] { ++ended; }); });
        ASSERT_TRUE(becomesTrue([&] { return ended == i + 1; }));
    }
    // Posted functions of before have no effect after the end.
    workers.post([&] { ++ended; });
}

} // namespace
} // namespace tidewright
