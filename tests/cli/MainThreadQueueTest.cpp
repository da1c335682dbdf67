#include "cli/MainThreadQueue.h"

#include <gtest/gtest.h>

#include <thread>

namespace tidewright {
namespace {

TEST(MainThreadQueue, ServesAnotherThreadOnThisOne) {
    const auto here = std::this_thread::get_id();
    const int result = servedByMainThread([&] {
        EXPECT_NE(std::this_thread::get_id(), here);
        int runs = 0;
        for (int i = 0; i < 3; ++i)
            runOnMainThread([&] {
                EXPECT_EQ(std::this_thread::get_id(), here);
                ++runs;
            });
        return runs;
    });
    EXPECT_EQ(result, 3);
}

TEST(MainThreadQueue, RunsWhatWasPostedBeforeTheEnd) {
    MainThreadQueue queue;
    int runs = 0;
    queue.post([&] { ++runs; });
    queue.finish();
    queue.serve();
    EXPECT_EQ(runs, 1);
}

} // namespace
} // namespace tidewright
