#include "core/platform/StandardFolders.h"

#include <gtest/gtest.h>

namespace tidewright {
namespace {

TEST(StandardFolders, AreAbsolute) {
    EXPECT_TRUE(homeDirectory().path().starts_with('/'));
    EXPECT_TRUE(temporaryDirectory().path().starts_with('/'));
    EXPECT_TRUE(userDataDirectory(URL("/home/user")).path().starts_with('/'));
    EXPECT_TRUE(userConfigDirectory(URL("/home/user")).path().starts_with('/'));
    EXPECT_TRUE(auditLogDirectory(URL("/home/user")).path().starts_with('/'));
}

TEST(StandardFolders, ApplicationsOfAllUsersComeBeforeTheUsersOwn) {
    EXPECT_EQ(applicationFolders(URL("/home/user")),
              (std::vector<URL>{URL("/Applications"), URL("/home/user/Applications")}));
    EXPECT_EQ(applicationFolders(URL("/home/user/")),
              (std::vector<URL>{URL("/Applications"), URL("/home/user/Applications")}));
}

} // namespace
} // namespace tidewright
