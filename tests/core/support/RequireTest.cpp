#include "core/support/Require.h"

#include <gtest/gtest.h>

namespace tidewright {
namespace {

TEST(RequireDeathTest, ABrokenPromiseStopsTheProgramAndNamesItsPlace) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(require(false, "the list is sorted"), testing::KilledBySignal(SIGABRT),
                "RequireTest\\.cpp:[0-9]+: broken promise: the list is sorted");
}

TEST(RequireDeathTest, AKeptPromiseChangesNothing) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            require(true, "the list is sorted");
            std::exit(7);
        },
        testing::ExitedWithCode(7), "^$");
}

} // namespace
} // namespace tidewright
