#include "core/model/Decision.h"

#include <gtest/gtest.h>

namespace tidewright {
namespace {

TEST(Risk, HasATitleAndARank) {
    struct Case {
        Risk risk;
        int rank;
        const char* title;
    };
    constexpr Case cases[] = {
        {Risk::safe, 0, "Safe"},
        {Risk::low, 1, "Low risk"},
        {Risk::check, 2, "Review"},
        {Risk::leave, 3, "Leave"},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(title(each.risk), each.title);
        EXPECT_EQ(static_cast<int>(each.risk), each.rank) << each.title;
    }
    EXPECT_LT(Risk::safe, Risk::low);
    EXPECT_LT(Risk::low, Risk::check);
    EXPECT_LT(Risk::check, Risk::leave);
}

TEST(Decision, OnlyWhatMayBeCleanedIsSelectable) {
    EXPECT_TRUE(isSelectable(Decision::clean));
    EXPECT_TRUE(isSelectable(Decision::ask));
    EXPECT_FALSE(isSelectable(Decision::keep));
    EXPECT_FALSE(isSelectable(Decision::info));
}

} // namespace
} // namespace tidewright
