#include "core/model/AppMatcher.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tidewright {
namespace {

TEST(AppMatcher, KnowsTheApplicationsAndTools) {
    using Texts = std::vector<std::string>;
    struct Case {
        const AppMatcher& matcher;
        std::string displayName;
        Texts bundleIdentifiers;
        Texts processPatterns;
    };
    const Case cases[] = {
        {AppMatcher::androidStudio, "Android Studio", {"com.google.android.studio"}, {}},
        {AppMatcher::xcode, "Xcode", {"com.apple.dt.Xcode"}, {}},
        {AppMatcher::simulator, "Simulator", {"com.apple.iphonesimulator"}, {}},
        {AppMatcher::vsCode, "Visual Studio Code", {"com.microsoft.VSCode"}, {}},
        {AppMatcher::chrome, "Google Chrome", {"com.google.Chrome"}, {}},
        {AppMatcher::brave, "Brave", {"com.brave.Browser"}, {}},
        {AppMatcher::firefox, "Firefox", {"org.mozilla.firefox"}, {}},
        {AppMatcher::gradle, "Gradle daemon", {}, {"GradleDaemon", "gradle-launcher"}},
        {AppMatcher::metro,
         "Metro bundler",
         {},
         {"react-native start", "@react-native/community-cli-plugin", "metro/src", "expo start"}},
        {AppMatcher::emulator, "Android emulator", {}, {"qemu-system"}},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(each.matcher.displayName, each.displayName);
        EXPECT_EQ(each.matcher.bundleIdentifiers, each.bundleIdentifiers) << each.displayName;
        EXPECT_EQ(each.matcher.processPatterns, each.processPatterns) << each.displayName;
    }
}

} // namespace
} // namespace tidewright
