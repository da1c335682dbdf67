#include "core/model/Category.h"

#include <gtest/gtest.h>

namespace tidewright {
namespace {

TEST(Category, HasItsWords) {
    struct Case {
        Category category;
        const char* title;
        const char* symbolName;
        const char* summary;
    };
    constexpr Case cases[] = {
        {Category::android, "Android", "cpu",
         "SDK packages, emulators, Gradle and Android Studio leftovers."},
        {Category::xcode, "Xcode & iOS", "hammer",
         "DerivedData, simulators, runtimes and CocoaPods."},
        {Category::javascript, "JavaScript", "curlybraces",
         "Package manager caches, bundler caches and old Node versions."},
        {Category::system, "System", "macwindow",
         "Logs, app caches, Homebrew, Trash and old downloads."},
        {Category::projects, "Projects", "folder",
         "Build outputs inside your projects. Never cleaned unless you pick them."},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(title(each.category), each.title);
        EXPECT_EQ(symbolName(each.category), each.symbolName);
        EXPECT_EQ(summary(each.category), each.summary);
    }
}

TEST(Category, IsOrderedAsInTheReport) {
    EXPECT_LT(Category::android, Category::xcode);
    EXPECT_LT(Category::xcode, Category::javascript);
    EXPECT_LT(Category::javascript, Category::system);
    EXPECT_LT(Category::system, Category::projects);
}

} // namespace
} // namespace tidewright
