#include "core/projects/VersionDecision.h"

#include <gtest/gtest.h>

namespace tidewright {
namespace {

using VersionDecision::AlsoKeep;
using VersionDecision::decide;
using VersionDecision::Outcome;

constexpr RequirementKind ndk = RequirementKind::ndk;
constexpr RequirementKind cmake = RequirementKind::cmake;

constexpr const char* unconfirmedNdk = "No project on this Mac declares a NDK version, so "
                                       "Tidewright can't confirm this one is unused.";

/// NDK 26.1 by a project and an emulator, NDK 9.0 and 10.0 by one project, CMake by five.
ScanContext contextWithNeeds() {
    ScanContext context;
    NeededSet& needed = context.needed;
    needed.add(ndk, "26.1", "shop");
    needed.add(ndk, "26.1", "emulator Pixel_8");
    needed.add(ndk, "10.0", "old");
    needed.add(ndk, "9.0", "old");
    for (const char* owner : {"e", "d", "c", "b", "a"})
        needed.add(cmake, "3.22.1", owner);
    return context;
}

TEST(VersionDecisionTest, FirstGroundThatAppliesDecides) {
    struct Case {
        const char* name;
        RequirementKind kind;
        const char* version;
        std::optional<AlsoKeep> alsoKeep;
        Outcome expected;
    };
    const AlsoKeep newest{"The newest one is kept.", true};
    const AlsoKeep notNewest{"The newest one is kept.", false};
    const Outcome unused{Decision::clean,
                         "No project uses NDK 21.0. Projects need 9.0, 10.0, 26.1."};
    const Case cases[] = {
        {"needed by two",
         ndk,
         "26.1",
         std::nullopt,
         {Decision::keep, "Needed by emulator Pixel_8 and shop."}},
        {"needed by one", ndk, "9.0", std::nullopt, {Decision::keep, "Needed by old."}},
        {"needed by many",
         cmake,
         "3.22.1",
         std::nullopt,
         {Decision::keep, "Needed by a, b and 3 more."}},
        {"needed and kept anyway", ndk, "9.0", newest, {Decision::keep, "Needed by old."}},
        {"needed and not kept otherwise",
         ndk,
         "9.0",
         notNewest,
         {Decision::keep, "Needed by old."}},
        {"not needed, but kept", ndk, "21.0", newest, {Decision::keep, "The newest one is kept."}},
        {"not needed", ndk, "21.0", std::nullopt, unused},
        {"not needed, not kept", ndk, "21.0", notNewest, unused},
        {"spelled in another way",
         ndk,
         "9.0.0",
         std::nullopt,
         {Decision::clean, "No project uses NDK 9.0.0. Projects need 9.0, 10.0, 26.1."}},
        {"with a blank",
         ndk,
         "9.0 ",
         std::nullopt,
         {Decision::clean, "No project uses NDK 9.0 . Projects need 9.0, 10.0, 26.1."}},
        {"of another kind",
         cmake,
         "26.1",
         std::nullopt,
         {Decision::clean, "No project uses CMake 26.1. Projects need 3.22.1."}},
    };
    const ScanContext context = contextWithNeeds();
    for (const Case& each : cases)
        EXPECT_EQ(decide(each.kind, each.version, context, each.alsoKeep), each.expected)
            << each.name << ": " << decide(each.kind, each.version, context, each.alsoKeep).reason;
}

TEST(VersionDecisionTest, WithoutAnyDeclarationTheUserIsAsked) {
    const ScanContext nothing;
    EXPECT_EQ(decide(ndk, "26.1", nothing), (Outcome{Decision::ask, unconfirmedNdk}));
    EXPECT_EQ(decide(ndk, "26.1", nothing, AlsoKeep{"Kept.", false}),
              (Outcome{Decision::ask, unconfirmedNdk}));
    EXPECT_EQ(decide(ndk, "26.1", nothing, AlsoKeep{"Kept.", true}),
              (Outcome{Decision::keep, "Kept."}));

    ScanContext others; // of other kinds, and of none at all
    others.needed.add(cmake, "3.22.1", "shop");
    others.needed.add(ndk, "  ", "shop");
    others.needed.storage[ndk];
    EXPECT_EQ(decide(ndk, "26.1", others), (Outcome{Decision::ask, unconfirmedNdk}));
}

TEST(VersionDecisionTest, SentencesNameEveryKindByItsTitle) {
    const ScanContext nothing;
    for (const RequirementKind kind : allCases<RequirementKind>()) {
        const std::string name(title(kind));
        EXPECT_EQ(decide(kind, "1", nothing).reason,
                  "No project on this Mac declares a " + name +
                      " version, so Tidewright can't confirm this one is unused.");
        ScanContext context;
        context.needed.add(kind, "2", "shop");
        EXPECT_EQ(decide(kind, "1", context).reason,
                  "No project uses " + name + " 1. Projects need 2.");
    }
}

} // namespace
} // namespace tidewright
