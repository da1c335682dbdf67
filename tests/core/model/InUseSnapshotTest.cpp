#include "core/model/InUseSnapshot.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace tidewright {
namespace {

InUseSnapshot processes(std::vector<std::string> lines) {
    InUseSnapshot snapshot;
    snapshot.processCommandLines = std::move(lines);
    return snapshot;
}

TEST(InUseSnapshot, IsRunningLooksForIdentifiersAndPatterns) {
    InUseSnapshot snapshot;
    snapshot.runningBundleIdentifiers = {"com.apple.dt.Xcode", "org.example.app"};
    snapshot.processCommandLines = {"/usr/bin/java -cp x.jar org.gradle.GradleDaemon 8.7",
                                    "node /x/node_modules/metro/src/cli.js"};
    struct Case {
        const char* name;
        AppMatcher matcher;
        bool expected;
    };
    const Case cases[] = {
        {"an identifier", {"", {"com.apple.dt.Xcode"}, {}}, true},
        {"the second of two", {"", {"org.none", "org.example.app"}, {}}, true},
        {"an identifier in other letters", {"", {"com.apple.dt.xcode"}, {}}, false},
        {"a part of an identifier", {"", {"com.apple.dt"}, {}}, false},
        {"more than an identifier", {"", {"org.example.app.helper"}, {}}, false},
        {"an empty identifier", {"", {""}, {}}, false},
        {"a pattern", {"", {}, {"GradleDaemon"}}, true},
        {"the second of two patterns", {"", {}, {"none", "metro/src"}}, true},
        {"a pattern in other letters", {"", {}, {"gradledaemon"}}, false},
        {"a pattern is no expression", {"", {}, {"Gradle.*"}}, false},
        {"a pattern over two lines", {"", {}, {"8.7node"}}, false},
        {"an identifier is no pattern", {"", {"GradleDaemon"}, {}}, false},
        {"a pattern is no identifier", {"", {}, {"org.example.app"}}, false},
        {"both, one of them found", {"", {"org.none"}, {"metro/src"}}, true},
        {"both, the other found", {"", {"org.example.app"}, {"none"}}, true},
        {"both, none found", {"", {"org.none"}, {"none"}}, false},
        {"nothing to look for", {"Xcode", {}, {}}, false},
        {"one of the known", AppMatcher::gradle, true},
        {"another", AppMatcher::chrome, false},
    };
    for (const Case& each : cases)
        EXPECT_EQ(snapshot.isRunning(each.matcher), each.expected) << each.name;
}

TEST(InUseSnapshot, OfNothingNothingIsRunning) {
    const InUseSnapshot nothing;
    EXPECT_FALSE(nothing.isRunning(AppMatcher::gradle));
    EXPECT_FALSE(nothing.isRunning(AppMatcher::xcode));
    EXPECT_FALSE(nothing.isRunning({"", {}, {""}}));
    EXPECT_EQ(nothing.processUsing("/"), std::nullopt);
    EXPECT_FALSE(nothing.isGradleVersionRunning("8.7"));
}

TEST(InUseSnapshot, ProcessUsingDescribesTheFirstProcessWithThePath) {
    const InUseSnapshot snapshot = processes({
        "/bin/zsh -l",
        "/usr/local/bin/node /Users/dev/app/server.js",
        "/usr/bin/vim /Users/dev/app/notes.txt",
        "node /Users/dev/.npm/_npx/0123/node_modules/.bin/serve /Users/dev/site",
    });
    struct Case {
        const char* path;
        std::optional<std::string> expected;
    };
    const Case cases[] = {
        {"/Users/dev/app", "node"},
        {"/Users/dev/app/notes.txt", "vim"},
        {"/Users/dev/site", "serve (via npx)"},
        {"/bin/zsh", "zsh"},
        {"/Users/dev/ap", "node"},
        {"/Users/dev/other", std::nullopt},
        {"/users/dev/app", std::nullopt},
    };
    for (const Case& each : cases)
        EXPECT_EQ(snapshot.processUsing(each.path), each.expected) << each.path;
}

TEST(InUseSnapshot, DescribeIsShort) {
    struct Case {
        const char* name;
        const char* line;
        const char* expected;
    };
    constexpr Case cases[] = {
        {"an executable", "/usr/local/bin/node server.js", "node"},
        {"a bare name", "vim notes.txt", "vim"},
        {"no arguments", "/usr/sbin/cupsd", "cupsd"},
        {"blanks in front", "  /bin/zsh -l", "zsh"},
        {"a login shell", "-zsh", "-zsh"},
        {"a path with a blank", "/Applications/Android Studio.app/Contents/MacOS/studio",
         "Android"},
        {"a package run through npx", "node /Users/dev/.npm/_npx/0a1b/node_modules/serve/cli.js",
         "serve (via npx)"},
        {"through its link", "node /Users/dev/.npm/_npx/0a1b/node_modules/.bin/http-server -p 1",
         "http-server (via npx)"},
        {"a scoped package",
         "node /Users/dev/.npm/_npx/0a1b/node_modules/@expo/ngrok-bin/main.js --x",
         "@expo/ngrok-bin (via npx)"},
        {"a scope ends the line", "node /x/_npx/0a1b/node_modules/@expo", "@expo (via npx)"},
        {"a package ends the line", "node /x/_npx/0a1b/node_modules/serve", "serve (via npx)"},
        {"the package ends at a blank", "node /x/_npx/1/node_modules/serve -p 80",
         "serve (via npx)"},
        {"the first of two", "node /x/_npx/1/node_modules/one/a.js /x/_npx/2/node_modules/two/b.js",
         "one (via npx)"},
        {"an ordinary package", "node /Users/dev/app/node_modules/serve/cli.js", "node"},
        {"a folder too deep", "node /x/_npx/1/2/node_modules/serve", "node"},
        {"nothing", "", ""},
        {"a slash", "/", "/"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(InUseSnapshot::describe(each.line), each.expected) << each.name;
}

TEST(InUseSnapshot, AGradleVersionIsFoundAsExactText) {
    struct Case {
        const char* name;
        const char* line;
        const char* version;
        bool expected;
    };
    constexpr Case cases[] = {
        {"a distribution", "java -cp /d/gradle-8.7-bin/x/lib/a.jar o.GradleDaemon", "8.7", true},
        {"all of it", "java -cp /d/gradle-8.7-all/x GradleDaemon", "8.7", true},
        {"a folder", "java -cp /opt/gradle-8.7/lib/a.jar GradleDaemon", "8.7", true},
        {"a folder of versions", "java -cp /caches/8.7/a.jar GradleDaemon", "8.7", true},
        {"a longer version", "java -cp /d/gradle-8.7.1-bin/x GradleDaemon", "8.7", false},
        {"a longer version in a folder", "java -cp /d/gradle-8.7.1/x GradleDaemon", "8.7", false},
        {"a longer number", "java -cp /d/gradle-8.70-bin/x GradleDaemon", "8.7", false},
        {"a number before it", "java -cp /caches/18.7/x GradleDaemon", "8.7", false},
        {"a shorter version", "java -cp /d/gradle-8.7-bin/x GradleDaemon", "8.7.1", false},
        {"a release candidate", "java -cp /d/gradle-8.7-rc-1-bin/x GradleDaemon", "8.7-rc-1", true},
        {"a dot is text", "java -cp /d/gradle-8x7-bin/x GradleDaemon", "8.7", false},
        {"the argument alone", "java GradleDaemon 8.7", "8.7", false},
        {"no daemon", "java -cp /d/gradle-8.7-bin/x GradleWrapperMain", "8.7", false},
        {"a daemon in other letters", "java -cp /d/gradle-8.7-bin/x gradledaemon", "8.7", false},
        {"the version at the end", "GradleDaemon /d/gradle-8.7", "8.7", false},
    };
    for (const Case& each : cases)
        EXPECT_EQ(processes({"zsh", each.line}).isGradleVersionRunning(each.version), each.expected)
            << each.name;
}

TEST(InUseSnapshot, AGradleVersionMustBeInTheDaemonsOwnLine) {
    const InUseSnapshot snapshot = processes({"java GradleDaemon", "less /d/gradle-8.7-bin/x"});
    EXPECT_FALSE(snapshot.isGradleVersionRunning("8.7"));
}

} // namespace
} // namespace tidewright
