#include "core/platform/linux/KnownApplications.h"

#include "core/model/AppMatcher.h"

#include <gmock/gmock.h>

#include <map>

namespace tidewright {
namespace {

using testing::Contains;
using testing::ElementsAre;

TEST(KnownApplications, EveryMatcherThatExistsOnLinuxIsReachedFromItsDesktopEntry) {
    const std::map<std::string, AppMatcher> matchers = {
        {"com.google.AndroidStudio", AppMatcher::androidStudio},
        {"android-studio", AppMatcher::androidStudio},
        {"jetbrains-studio", AppMatcher::androidStudio},
        {"com.visualstudio.code", AppMatcher::vsCode},
        {"code", AppMatcher::vsCode},
        {"code_code", AppMatcher::vsCode},
        {"google-chrome", AppMatcher::chrome},
        {"com.google.Chrome", AppMatcher::chrome},
        {"brave-browser", AppMatcher::brave},
        {"com.brave.Browser", AppMatcher::brave},
        {"firefox", AppMatcher::firefox},
        {"firefox-esr", AppMatcher::firefox},
        {"firefox_firefox", AppMatcher::firefox},
        {"org.mozilla.firefox", AppMatcher::firefox},
    };
    for (const auto& [name, matcher] : matchers)
        for (const std::string& identifier : matcher.bundleIdentifiers)
            EXPECT_THAT(allIdentifiers(name), Contains(identifier)) << name;
}

TEST(KnownApplications, EveryMatcherThatExistsOnLinuxIsReachedFromItsProgram) {
    const std::map<std::string, AppMatcher> matchers = {
        {"studio", AppMatcher::androidStudio}, {"studio.sh", AppMatcher::androidStudio},
        {"code", AppMatcher::vsCode},          {"chrome", AppMatcher::chrome},
        {"google-chrome", AppMatcher::chrome}, {"google-chrome-stable", AppMatcher::chrome},
        {"brave", AppMatcher::brave},          {"brave-browser", AppMatcher::brave},
        {"firefox", AppMatcher::firefox},      {"firefox-esr", AppMatcher::firefox},
        {"firefox-bin", AppMatcher::firefox},
    };
    for (const auto& [program, matcher] : matchers)
        EXPECT_THAT(matcher.bundleIdentifiers, ElementsAre(identifierOfProgram(program)))
            << program;
}

TEST(KnownApplications, AllNamesOfAnApplicationLeadToEachOther) {
    for (const char* const name : {"com.microsoft.VSCode", "code", "com.visualstudio.code"}) {
        const auto identifiers = allIdentifiers(name);
        EXPECT_EQ(identifiers.front(), name);
        EXPECT_THAT(identifiers,
                    testing::UnorderedElementsAre("com.microsoft.VSCode", "code", "code_code",
                                                  "com.visualstudio.code"));
    }
}

TEST(KnownApplications, LookAlikesHaveNoOtherNames) {
    for (const char* const name :
         {"org.example.Unknown", "com.google.chrome", "com.google.Chrome.helper", "com.google",
          "Code", "code-", "xcode", "com.microsoft.vscode", "Firefox",
          "org.mozilla.firefoxdeveloperedition", "com.apple.dt.Xcode", ""})
        EXPECT_THAT(allIdentifiers(name), ElementsAre(name)) << name;
}

TEST(KnownApplications, LookAlikesAreNoKnownPrograms) {
    for (const char* const program : {"",
                                      "Code",
                                      "code.sh",
                                      "xcode",
                                      "code-server",
                                      "vscode",
                                      "chromedriver",
                                      "chrome.sh",
                                      "chrome_crashpad_handler",
                                      "chrome-sandbox",
                                      "firefoxd",
                                      "Firefox",
                                      "geckodriver",
                                      "rstudio",
                                      "studio.py",
                                      "Studio",
                                      "brave-wallet",
                                      "java",
                                      "bash",
                                      "electron",
                                      "com.google.Chrome"})
        EXPECT_EQ(identifierOfProgram(program), std::nullopt) << program;
}

TEST(KnownApplications, AndroidStudioIsTheJavaProgramWithItsLauncherSettings) {
    const std::vector<std::vector<std::string>> studio = {
        {"java", "-Xmx2048m", "-Didea.paths.selector=AndroidStudio2023.1",
         "com.intellij.idea.Main"},
        {"java", "-Didea.paths.selector=AndroidStudioPreview2024.2", "com.intellij.idea.Main"},
        {"java", "-Didea.vendor.name=Google", "com.intellij.idea.Main"},
        {"java", "-Didea.platform.prefix=AndroidStudio", "com.intellij.idea.Main"},
    };
    for (const auto& arguments : studio)
        EXPECT_EQ(identifierOfJavaProgram(arguments), "com.google.android.studio") << arguments[1];

    const std::vector<std::vector<std::string>> others = {
        {},
        {"java"},
        {"java", "-jar", "AndroidStudio.jar"},
        {"java", "-Didea.paths.selector=IntelliJIdea2023.1", "-Didea.vendor.name=JetBrains"},
        {"java", "-Didea.paths.selector=MyAndroidStudio"},
        {"java", "-Didea.vendor.name=GoogleFan"},
        {"java", "-Didea.platform.prefix=AndroidStudioLike"},
        {"java", "-cp", "/opt/android-studio/lib/app.jar", "org.gradle.launcher.daemon.Main"},
        {"java", "idea.vendor.name=Google"},
    };
    for (const auto& arguments : others)
        EXPECT_EQ(identifierOfJavaProgram(arguments), std::nullopt);
}

TEST(KnownApplications, AnIdentifierIsAPlainNameOfAFile) {
    for (const std::string& text : std::vector<std::string>{
             "org.mozilla.firefox", "code", "code_code", "a", "com.example.My App", "caf\xC3\xA9",
             "a..b", std::string(200, 'a')})
        EXPECT_TRUE(isApplicationIdentifier(text)) << text;
    for (const std::string& text :
         std::vector<std::string>{"", ".", "..", ".hidden", "../firefox", "a/b", "/", "a/../b",
                                  "a\nb", std::string("a\0b", 3), std::string("\0", 1), "a\x7F",
                                  "\x1b[2J", std::string(201, 'a')})
        EXPECT_FALSE(isApplicationIdentifier(text)) << text;
}

} // namespace
} // namespace tidewright
