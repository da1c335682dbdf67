#include "core/platform/SystemLog.h"

#include "core/support/ChildTask.h"

#include <gtest/gtest.h>

#include <memory>

namespace tidewright {
namespace {

const Logger logger{"com.tidewright.core", "test"};

TEST(SystemLog, TakesAnyText) {
    for (const std::string& text :
         std::vector<std::string>{"", "\n", std::string("a\0b", 3), "\x1b[2J", "\xFF\xFE",
                                  "%s%n%d {} {0}", std::string(1'000'000, 'x')})
        for (const LogLevel level : {LogLevel::debug, LogLevel::info})
            logger.log(level, text);
    Logger{"", ""}.info("nameless");
}

TEST(SystemLog, TakesTextsOfManyThreads) {
    std::vector<std::unique_ptr<ChildTask<bool>>> writers;
    for (int i = 0; i < 8; ++i)
        writers.push_back(std::make_unique<ChildTask<bool>>([] {
            for (int line = 0; line < 100; ++line)
                logger.info("at once");
            return true;
        }));
    for (const auto& writer : writers)
        EXPECT_TRUE(writer->await());
}

} // namespace
} // namespace tidewright
