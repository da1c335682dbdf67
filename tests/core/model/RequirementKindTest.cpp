#include "core/model/RequirementKind.h"

#include <gtest/gtest.h>

namespace tidewright {
namespace {

TEST(RequirementKind, HasTheUsersWordForIt) {
    struct Case {
        RequirementKind kind;
        const char* title;
    };
    constexpr Case cases[] = {
        {RequirementKind::gradle, "Gradle"},
        {RequirementKind::ndk, "NDK"},
        {RequirementKind::buildTools, "Build tools"},
        {RequirementKind::cmake, "CMake"},
        {RequirementKind::compileSdk, "compileSdk"},
        {RequirementKind::systemImage, "System image"},
        {RequirementKind::simulator, "Simulator"},
        {RequirementKind::iosRuntime, "iOS runtime"},
        {RequirementKind::node, "Node"},
    };
    static_assert(std::size(cases) == allCases<RequirementKind>().size());
    for (const Case& each : cases)
        EXPECT_EQ(title(each.kind), each.title);
}

} // namespace
} // namespace tidewright
