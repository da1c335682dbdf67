#include "core/probes/SystemAccess.h"

#include "tests/support/FtsOracle.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace tidewright {

namespace {

using test::allocatedBytes;
using test::asOrdinaryUser;
using test::TempHome;

constexpr const char* database = "Library/Application Support/com.apple.TCC/TCC.db";

/// What an ordinary user is told.
std::string accessTo(const TempHome& home) {
    home.setMode("", 0755);
    return asOrdinaryUser(
        [&] { return SystemAccess::hasFullDiskAccess(home.url()) ? "granted" : "denied"; });
}

std::string trashOf(const TempHome& home) {
    home.setMode("", 0755);
    return asOrdinaryUser([&] {
        const auto size = SystemAccess::trashSize(home.url());
        return size ? std::to_string(*size) : "absent";
    });
}

TEST(SystemAccessTest, EmptyHomeGrantsNothing) {
    const TempHome home;
    EXPECT_EQ(accessTo(home), "denied");
}

TEST(SystemAccessTest, ReadableDatabaseIsEnough) {
    const TempHome home;
    home.file(database);
    EXPECT_EQ(accessTo(home), "granted");
    home.folder(".Trash");
    home.setMode(".Trash", 0);
    EXPECT_EQ(accessTo(home), "granted");
}

TEST(SystemAccessTest, MissingDatabaseWithReadableTrashAndSafariIsEnough) {
    const TempHome home;
    home.folder(".Trash");
    home.folder("Library/Safari");
    EXPECT_EQ(accessTo(home), "granted");
}

TEST(SystemAccessTest, ClosedDatabaseWithReadableTrashAndSafariIsEnough) {
    const TempHome home;
    home.file(database);
    home.setMode(database, 0);
    home.folder(".Trash");
    EXPECT_EQ(accessTo(home), "denied");
    home.folder("Library/Safari");
    EXPECT_EQ(accessTo(home), "granted");
}

TEST(SystemAccessTest, ReadableTrashWithoutSafariIsNotEnough) {
    const TempHome home;
    home.folder(".Trash");
    EXPECT_EQ(accessTo(home), "denied");
}

TEST(SystemAccessTest, ClosedTrashOrSafariIsNotEnough) {
    for (const char* closed : {".Trash", "Library/Safari"}) {
        for (const unsigned mode : {0U, 0111U}) {
            const TempHome home;
            home.folder(".Trash");
            home.folder("Library/Safari");
            home.setMode(closed, mode);
            EXPECT_EQ(accessTo(home), "denied") << closed << " with mode " << mode;
        }
    }
}

TEST(SystemAccessTest, SafariWithoutATrashIsNotEnough) {
    const TempHome home;
    home.folder("Library/Safari");
    EXPECT_EQ(accessTo(home), "denied");
    home.file(".Trash", "no folder");
    EXPECT_EQ(accessTo(home), "denied");
}

TEST(SystemAccessTest, EachQuestionTouchesTheDiskAgain) {
    const TempHome home;
    home.folder(".Trash");
    EXPECT_FALSE(SystemAccess::hasFullDiskAccess(home.url()));
    home.folder("Library/Safari");
    EXPECT_TRUE(SystemAccess::hasFullDiskAccess(home.url()));
}

TEST(SystemAccessTest, PipeInPlaceOfTheDatabaseIsNotWaitedFor) {
    const TempHome home;
    home.folder("Library/Application Support/com.apple.TCC");
    ASSERT_EQ(mkfifo(home.path(database).path().c_str(), 0644), 0);
    EXPECT_EQ(accessTo(home), "granted");
    home.setMode(database, 0);
    EXPECT_EQ(accessTo(home), "denied");
}

TEST(SystemAccessTest, SettingsStandAtTheirAddress) {
    EXPECT_EQ(SystemAccess::fullDiskAccessSettingsURL,
              "x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles");
}

TEST(SystemAccessTest, SizeOfTheTrashIsThatOfTheFolderWithAllInIt) {
    const TempHome home;
    home.allocatedFile(".Trash/old/file", 65'536);
    home.allocatedFile(".Trash/.DS_Store", 8192);
    const Int64 expected = 65'536 + 8192 + allocatedBytes(home.path(".Trash")) +
                           allocatedBytes(home.path(".Trash/old"));
    EXPECT_EQ(SystemAccess::trashSize(home.url()), expected);
    EXPECT_EQ(test::ftsTreeSize(home.path(".Trash")), expected);
    EXPECT_EQ(trashOf(home), std::to_string(expected));
}

TEST(SystemAccessTest, EmptyTrashIsSmallAndNotUnknown) {
    const TempHome home;
    home.folder(".Trash");
    EXPECT_EQ(SystemAccess::trashSize(home.url()), allocatedBytes(home.path(".Trash")));
    EXPECT_LT(SystemAccess::trashSize(home.url()), 1'000'000);
}

TEST(SystemAccessTest, TrashThatMayNotBeListedHasNoSize) {
    for (const unsigned mode : {0U, 0111U}) {
        const TempHome home;
        home.allocatedFile(".Trash/file", 65'536);
        EXPECT_NE(trashOf(home), "absent");
        home.setMode(".Trash", mode);
        EXPECT_EQ(trashOf(home), "absent") << mode;
    }
}

TEST(SystemAccessTest, TrashThatIsMissingOrNoFolderHasNoSize) {
    const TempHome home;
    EXPECT_EQ(SystemAccess::trashSize(home.url()), std::nullopt);
    home.file(".Trash", "no folder");
    EXPECT_EQ(SystemAccess::trashSize(home.url()), std::nullopt);
}

TEST(SystemAccessTest, PartsOfTheTrashThatAreClosedAreLeftOut) {
    const TempHome home;
    home.allocatedFile(".Trash/open", 65'536);
    home.allocatedFile(".Trash/closed/file", 1'048'576);
    home.setMode(".Trash/closed", 0);
    EXPECT_EQ(trashOf(home), std::to_string(65'536 + allocatedBytes(home.path(".Trash"))));
}

} // namespace

} // namespace tidewright
