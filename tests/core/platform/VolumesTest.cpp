#include "core/platform/Volumes.h"

#include "tests/support/TempHome.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace tidewright {
namespace {

using test::TempHome;

TEST(Volumes, TheFigureForImportantUsageCountsWhereItIsPresent) {
    struct Case {
        const char* name;
        VolumeCapacity capacity;
        DiskSpace expected;
    };
    const Case cases[] = {
        {"all figures", {1'000, 300, 200}, {1'000, 300}},
        {"no figure for important usage", {1'000, std::nullopt, 200}, {1'000, 200}},
        {"only that for important usage", {1'000, 300, std::nullopt}, {1'000, 300}},
        {"a present 0 stands", {1'000, 0, 200}, {1'000, 0}},
        {"a plain 0", {1'000, std::nullopt, 0}, {1'000, 0}},
        {"neither", {1'000, std::nullopt, std::nullopt}, {1'000, 0}},
        {"no total", {std::nullopt, 300, 200}, {0, 300}},
        {"nothing", {}, {0, 0}},
    };
    for (const Case& each : cases)
        EXPECT_EQ(diskSpace(each.capacity), each.expected) << each.name;
    EXPECT_EQ(diskSpace({1'000, std::nullopt, std::nullopt}).health(1, 1),
              DiskSpace::Health::critical);
}

TEST(Volumes, ARealVolumeHasACapacity) {
    const TempHome home;
    const auto capacity = volumeCapacity(home.url());
    ASSERT_TRUE(capacity.has_value()) << capacity.error().sentence();
    EXPECT_GT(capacity->total.value_or(0), 0);
    const DiskSpace disk = diskSpace(*capacity);
    EXPECT_GT(disk.availableBytes, 0);
    EXPECT_LE(disk.availableBytes, disk.totalBytes);
}

TEST(Volumes, TheVolumeOfAFileIsThatOfItsFolder) {
    const TempHome home;
    const auto ofFolder = volumeCapacity(home.url());
    const auto ofFile = volumeCapacity(home.file("file", "text"));
    ASSERT_TRUE(ofFolder.has_value() && ofFile.has_value());
    EXPECT_EQ(ofFile->total, ofFolder->total);
}

TEST(Volumes, ALocationThatIsMissingHasNone) {
    const TempHome home;
    const auto capacity = volumeCapacity(home.path("missing"));
    ASSERT_FALSE(capacity.has_value());
    EXPECT_EQ(capacity.error().code, ENOENT);
    EXPECT_EQ(capacity.error().path, home.path("missing").path());
}

TEST(Volumes, TheCurrentDiskHasSpace) {
    const auto disk = DiskSpace::current();
    ASSERT_TRUE(disk.has_value()) << disk.error().sentence();
    EXPECT_GT(disk->totalBytes, 0);
    EXPECT_LE(disk->availableBytes, disk->totalBytes);
    EXPECT_GE(disk->usedFraction(), 0);
    EXPECT_LE(disk->usedFraction(), 1);
}

} // namespace
} // namespace tidewright
