#include "core/support/Result.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>

namespace tidewright {
namespace {

TEST(SystemError, SaysWhatWasTriedOnWhatAndWhyItFailed) {
    const SystemError error{EACCES, "list", "/home/dev/Private"};
    EXPECT_EQ(error.reason(), "Permission denied");
    EXPECT_EQ(error.sentence(), "Could not list /home/dev/Private: Permission denied.");
}

TEST(SystemError, WithoutAPathItIsNotNamed) {
    const SystemError error{ENOENT, "start the tool", ""};
    EXPECT_EQ(error.sentence(), "Could not start the tool: No such file or directory.");
}

TEST(Result, HoldsAValueOrAFailure) {
    const auto half = [](int number) -> Result<int, std::string> {
        if (number % 2 != 0)
            return Failure("odd: " + std::to_string(number));
        return number / 2;
    };
    EXPECT_EQ(half(8).value(), 4);
    ASSERT_FALSE(half(7).has_value());
    EXPECT_EQ(half(7).error(), "odd: 7");
    EXPECT_EQ(half(7).value_or(-1), -1);
}

TEST(Result, AFailureMayBeMadeOfANamedError) {
    const SystemError error{EIO, "read", "/disk"};
    const auto fail = [&]() -> Result<int, SystemError> { return Failure(error); };
    EXPECT_EQ(fail().error(), error);
}

} // namespace
} // namespace tidewright
