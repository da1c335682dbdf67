#include "core/model/Project.h"

#include <gtest/gtest.h>

namespace tidewright {
namespace {

using namespace std::chrono_literals;

TEST(Project, DaysSinceActivityAreWholeDays) {
    const Date now(1'780'000'000s); // in a May, far from any change of the clock
    struct Case {
        const char* name;
        std::optional<Date> lastActivity;
        std::optional<int> expected;
    };
    const Case cases[] = {
        {"unknown", std::nullopt, std::nullopt},
        {"now", now, 0},
        {"almost a day ago", now - 24h + 1s, 0},
        {"a day ago", now - 24h, 1},
        {"nine days and a bit ago", now - 9 * 24h - 5h, 9},
        {"in a day", now + 24h, -1},
    };
    for (const Case& each : cases) {
        Project project;
        project.lastActivity = each.lastActivity;
        EXPECT_EQ(project.daysSinceActivity(now), each.expected) << each.name;
    }
}

} // namespace
} // namespace tidewright
