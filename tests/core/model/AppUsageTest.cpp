#include "core/model/AppUsage.h"

#include <gtest/gtest.h>

namespace tidewright {
namespace {

using namespace std::chrono_literals;

TEST(AppUsage, IdleDaysCountFromTheLastUseElseFromWhenItWasAdded) {
    const Date now(1'780'000'000s); // in a May, far from any change of the clock
    struct Case {
        const char* name;
        std::optional<Date> lastUsed;
        std::optional<Date> addedOn;
        std::optional<int> expected;
    };
    const Case cases[] = {
        {"nothing is known", std::nullopt, std::nullopt, std::nullopt},
        {"never opened", std::nullopt, now - 9 * 24h, 9},
        {"opened since it was added", now - 2 * 24h, now - 9 * 24h, 2},
        {"brought here long after it was used", now - 9 * 24h, now - 2 * 24h, 9},
        {"nobody knows when it was added", now - 3 * 24h, std::nullopt, 3},
        {"opened just now", now, std::nullopt, 0},
        {"not quite a day ago", now - 24h + 1s, std::nullopt, 0},
        {"a day ago", now - 24h, std::nullopt, 1},
        {"two days and a bit ago", now - 2 * 24h - 5h, std::nullopt, 2},
        {"by a clock that ran ahead", now + 24h, now - 9 * 24h, -1},
    };
    for (const Case& each : cases) {
        AppUsage app;
        app.lastUsed = each.lastUsed;
        app.addedOn = each.addedOn;
        EXPECT_EQ(app.idleDays(now), each.expected) << each.name;
    }
}

} // namespace
} // namespace tidewright
