// What reaches standard error on a system without a journal.
#include "core/platform/SystemLog.h"

#include "core/platform/FileInfo.h"
#include "core/support/ChildTask.h"
#include "core/support/Text.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <set>

namespace tidewright {
namespace {

const Logger logger{"com.tidewright.core", "scan"};

class StandardErrorLog : public testing::Test {
protected:
    void SetUp() override {
        if (fileExists(URL("/run/systemd/journal/socket")))
            GTEST_SKIP() << "this system has a journal, which takes all entries";
        unsetenv("TIDEWRIGHT_LOG");
    }
    void TearDown() override { unsetenv("TIDEWRIGHT_LOG"); }

    static std::string outputOf(const std::function<void()>& work) {
        testing::internal::CaptureStderr();
        work();
        return testing::internal::GetCapturedStderr();
    }
};

TEST_F(StandardErrorLog, GetsALineForEachNoticeAndError) {
    EXPECT_EQ(outputOf([] { logger.error("can't list /x"); }),
              "tidewright: [com.tidewright.core scan] can't list /x\n");
    EXPECT_EQ(outputOf([] { logger.log(LogLevel::notice, "done"); }),
              "tidewright: [com.tidewright.core scan] done\n");
}

TEST_F(StandardErrorLog, GetsDetailsOnlyWhenAskedFor) {
    const auto details = [] {
        logger.info("info");
        logger.log(LogLevel::debug, "debug");
    };
    EXPECT_EQ(outputOf(details), "");
    setenv("TIDEWRIGHT_LOG", "", 1);
    EXPECT_EQ(outputOf(details), "");
    setenv("TIDEWRIGHT_LOG", "1", 1);
    EXPECT_EQ(outputOf(details), "tidewright: [com.tidewright.core scan] info\n"
                                 "tidewright: [com.tidewright.core scan] debug\n");
}

TEST_F(StandardErrorLog, KeepsAnEntryOnItsLine) {
    const std::string mark = "\xEF\xBF\xBD";
    EXPECT_EQ(outputOf([] { logger.error("a\nb\r\x1b[2J\xFF{}%s"); }),
              "tidewright: [com.tidewright.core scan] a" + mark + "b" + mark + mark + "[2J" + mark +
                  "{}%s\n");
}

TEST_F(StandardErrorLog, KeepsLinesOfSeveralThreadsApart) {
    const std::string output = outputOf([] {
        std::vector<std::unique_ptr<ChildTask<bool>>> writers;
        for (const char letter : {'a', 'b', 'c', 'd'})
            writers.push_back(std::make_unique<ChildTask<bool>>([letter] {
                for (int line = 0; line < 100; ++line)
                    logger.error(std::string(200, letter));
                return true;
            }));
    });
    const std::vector<std::string> lines = nonEmptyLines(output);
    EXPECT_EQ(lines.size(), 400U);
    EXPECT_EQ(std::set(lines.begin(), lines.end()).size(), 4U);
}

TEST_F(StandardErrorLog, IsNotNeeded) {
    const int saved = dup(STDERR_FILENO);
    close(STDERR_FILENO);
    logger.error("nobody reads this");
    dup2(saved, STDERR_FILENO);
    close(saved);
}

} // namespace
} // namespace tidewright
