#include "core/platform/FileLock.h"

#include "core/platform/FileInfo.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <thread>

namespace tidewright {
namespace {

using namespace std::chrono_literals;
using test::TempHome;

class FileLockTest : public testing::Test {
protected:
    TempHome home;
    URL file = home.path("lock");
    bool canBeHad(Duration wait = Duration(0)) const { return FileLock(file, wait).isHeld(); }
};

TEST_F(FileLockTest, OneHoldsItUntilItsEnd) {
    {
        const FileLock lock(file, 0s);
        EXPECT_TRUE(lock.isHeld());
        EXPECT_FALSE(canBeHad());
        EXPECT_FALSE(canBeHad(20ms));
    }
    EXPECT_TRUE(canBeHad());
    EXPECT_TRUE(fileExists(file));
}

TEST_F(FileLockTest, WaitingEndsWhenTheOtherIsDone) {
    auto lock = std::make_unique<FileLock>(file, 0s);
    std::thread other([&] {
        std::this_thread::sleep_for(20ms);
        lock.reset();
    });
    EXPECT_TRUE(canBeHad(60s));
    other.join();
}

TEST_F(FileLockTest, AKilledHolderHoldsNothing) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        alarm(60);
        const FileLock lock(file, 0s);
        (void)!write(ends[1], lock.isHeld() ? "h" : "n", 1);
        for (;;)
            pause();
    }
    char held = 0;
    ASSERT_EQ(read(ends[0], &held, 1), 1);
    EXPECT_EQ(held, 'h');
    EXPECT_FALSE(canBeHad());
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_TRUE(canBeHad());
    close(ends[0]);
    close(ends[1]);
}

TEST_F(FileLockTest, WhereNoneCanBeHadNobodyWaits) {
    EXPECT_FALSE(FileLock(home.path("missing/lock"), 60s).isHeld());
    EXPECT_FALSE(FileLock(home.folder("folder"), 60s).isHeld());
    home.file("kept", "kept");
    home.link("link", "kept");
    EXPECT_FALSE(FileLock(home.path("link"), 60s).isHeld());
    home.setMode("", 0555);
    EXPECT_EQ(test::asOrdinaryUser([&] { return canBeHad(60s) ? "held" : "not held"; }),
              "not held");
}

} // namespace
} // namespace tidewright
