#include "cli/Paths.h"

#include "tests/support/TempHome.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace tidewright {
namespace {

TEST(Paths, TakesARelativePathFromTheCurrentFolder) {
    const std::string current = std::filesystem::current_path().string();
    EXPECT_EQ(absolute("a/../b/").path(), URL(current).appending("b").path());
    EXPECT_EQ(absolute(".").path(), current);
    EXPECT_EQ(absolute("/a//b/.").path(), "/a/b");
}

TEST(Paths, AcceptsFoldersAndLinksToThem) {
    const test::TempHome home;
    home.folder("projects");
    home.link("link", "projects");
    EXPECT_EQ(existingFolder(home.path("projects").path()), home.path("projects"));
    EXPECT_EQ(existingFolder(home.path("link").path()), home.path("link"));
}

TEST(Paths, SaysWhyAFolderCannotBeUsed) {
    const test::TempHome home;
    const std::string missing = home.path("missing").path();
    EXPECT_EQ(existingFolder(missing).error(),
              "the folder " + missing + " can't be used: No such file or directory.");
    const std::string file = home.file("file").path();
    EXPECT_EQ(existingFolder(file).error(), file + " is not a folder.");
}

} // namespace
} // namespace tidewright
