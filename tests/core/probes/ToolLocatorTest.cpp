#include "core/probes/ToolLocator.h"

#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>

namespace tidewright {

namespace {

using test::TempHome;
using testing::ElementsAre;

std::string nvmFolder(const TempHome& home, std::string_view version) {
    return home.path(".nvm/versions/node").appending(version).appending("bin").path();
}

/// What stands between the folders of all users and those of this one.
std::vector<std::string> betweenLocalAndFnm(const TempHome& home) {
    const std::vector<std::string> path = ToolLocator(home.url(), {}).searchPath;
    const auto local = std::ranges::find(path, "/usr/local/bin");
    const auto fnm =
        std::ranges::find(path, home.path(".local/share/fnm/aliases/default/bin").path());
    return local < fnm ? std::vector(local + 1, fnm) : std::vector<std::string>{"not in order"};
}

TEST(ToolLocatorTest, SearchPathIsTheListOfDevelopersFoldersThenPATH) {
    const URL home("/home/dev");
    EXPECT_THAT(
        ToolLocator(home, {{"PATH", "/opt/own/bin:relative:/x y"}, {"HOME", "/other"}}).searchPath,
        ElementsAre("/opt/homebrew/bin", "/opt/homebrew/sbin", "/usr/local/bin",
                    "/home/dev/.local/share/fnm/aliases/default/bin", "/home/dev/.volta/bin",
                    "/home/dev/.bun/bin", "/home/dev/.yarn/bin", "/home/dev/Library/pnpm",
                    "/home/dev/.rbenv/shims", "/home/dev/.gem/bin", "/usr/bin", "/bin", "/usr/sbin",
                    "/sbin", "/opt/own/bin", "relative", "/x y"));
}

TEST(ToolLocatorTest, NewestNodeOfNvmComesAfterTheFoldersOfAllUsers) {
    const TempHome home;
    home.folder(".nvm/versions/node/v20.11.0/bin");
    const std::vector<std::string> path = ToolLocator(home.url(), {{"PATH", "/last"}}).searchPath;
    ASSERT_EQ(path.size(), 16U);
    EXPECT_EQ(path[2], "/usr/local/bin");
    EXPECT_EQ(path[3], nvmFolder(home, "v20.11.0"));
    EXPECT_EQ(path[4], home.path(".local/share/fnm/aliases/default/bin").path());
    EXPECT_EQ(path.back(), "/last");
}

TEST(ToolLocatorTest, VersionsOfNvmAreComparedAsNumbers) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases{
        {{"18.2.0", "18.10.0"}, "18.10.0"},
        {{"v18.2.0", "v18.10.0"}, "v18.10.0"},
        {{"v9.5.0", "v20.11.0"}, "v20.11.0"},
        {{"9.5.0", "20.11.0"}, "20.11.0"},
        {{"v20.9.0", "v20.11.1", "v20.11.0", "v8.0.0"}, "v20.11.1"},
        {{"v4.0.0"}, "v4.0.0"},
    };
    for (const auto& [versions, newest] : cases) {
        const TempHome home;
        for (const std::string& version : versions)
            home.folder(".nvm/versions/node/" + version);
        EXPECT_THAT(betweenLocalAndFnm(home), ElementsAre(nvmFolder(home, newest)));
    }
}

TEST(ToolLocatorTest, EntriesOfNvmAreNotFilteredByTheirName) {
    const TempHome home;
    home.file(".nvm/versions/node/zz no folder");
    home.folder(".nvm/versions/node/v20.11.0");
    home.file(".nvm/versions/node/.DS_Store");
    EXPECT_THAT(betweenLocalAndFnm(home), ElementsAre(nvmFolder(home, "zz no folder")));
}

TEST(ToolLocatorTest, WithoutNodesOfNvmThereIsNone) {
    const TempHome home;
    EXPECT_THAT(betweenLocalAndFnm(home), ElementsAre());
    home.folder(".nvm/versions/node");
    EXPECT_THAT(betweenLocalAndFnm(home), ElementsAre());
    const TempHome other;
    other.file(".nvm/versions/node", "not a folder");
    EXPECT_THAT(betweenLocalAndFnm(other), ElementsAre());
}

TEST(ToolLocatorTest, WithoutPATHTheFixedFoldersAreAll) {
    const TempHome home;
    EXPECT_EQ(ToolLocator(home.url(), {}).searchPath.size(), 14U);
    EXPECT_EQ(ToolLocator(home.url(), {{"PATH", ""}}).searchPath.size(), 14U);
    EXPECT_EQ(ToolLocator(home.url(), {{"PATH", ":::"}}).searchPath.size(), 14U);
    EXPECT_EQ(ToolLocator(home.url(), {{"Path", "/no"}}).searchPath.size(), 14U);
}

TEST(ToolLocatorTest, EachFolderStandsOnceAtItsFirstPlace) {
    const TempHome home;
    const std::vector<std::string> path =
        ToolLocator(home.url(), {{"PATH", "/own:/opt/homebrew/bin::/bin:/own:/usr/local/bin:" +
                                              home.path(".bun/bin").path() + ":/own/"}})
            .searchPath;
    EXPECT_EQ(path.size(), 16U);
    EXPECT_EQ(path[0], "/opt/homebrew/bin");
    EXPECT_EQ(std::ranges::count(path, "/opt/homebrew/bin"), 1);
    EXPECT_EQ(path[14], "/own");
    EXPECT_EQ(path[15], "/own/") << "folders are compared as text";
}

TEST(ToolLocatorTest, FirstFolderWithAnExecutableWins) {
    const TempHome home;
    home.file("first/tool", "#!/bin/sh\n"); // not executable
    home.link("second/tool", "missing");
    home.tool("third/tool", "exit 0");
    home.tool("fourth/tool", "exit 0");
    ToolLocator locator;
    for (const char* folder : {"missing", "first", "second", "third", "fourth"})
        locator.searchPath.push_back(home.path(folder).path());
    EXPECT_EQ(locator.locate("tool"), home.path("third/tool"));
    EXPECT_EQ(locator.locate("other"), std::nullopt);
}

TEST(ToolLocatorTest, LinkToAnExecutableIsOne) {
    const TempHome home;
    home.tool("somewhere/tool", "exit 0");
    home.link("bin/tool", "../somewhere/tool");
    ToolLocator locator;
    locator.searchPath = {home.path("bin").path()};
    EXPECT_EQ(locator.locate("tool"), home.path("bin/tool")) << "the link itself";
}

TEST(ToolLocatorTest, AbsoluteNameStandsForItself) {
    const TempHome home;
    const URL tool = home.tool("elsewhere/tool", "exit 0");
    home.tool("bin/tool", "exit 0");
    home.file("plain");
    ToolLocator locator;
    EXPECT_EQ(locator.locate(tool.path()), tool);
    locator.searchPath = {home.path("bin").path(), "/"};
    EXPECT_EQ(locator.locate(tool.path()), tool);
    EXPECT_EQ(locator.locate(home.path("plain").path()), std::nullopt);
    EXPECT_EQ(locator.locate("/tool"), std::nullopt) << "the search path plays no part";
}

TEST(ToolLocatorTest, NameWithASlashInsideIsTakenFromEachFolder) {
    const TempHome home;
    const URL tool = home.tool("second/inner/tool", "exit 0");
    ToolLocator locator;
    locator.searchPath = {home.path("first").path(), home.path("second").path()};
    EXPECT_EQ(locator.locate("inner/tool"), tool);
}

TEST(ToolLocatorTest, FolderPassesWithItsExecuteBitAlone) {
    const TempHome home;
    home.setMode("", 0755);
    home.folder("open");
    home.folder("closed");
    home.setMode("closed", 0644);
    ToolLocator locator;
    locator.searchPath = {home.url().path()};
    const auto answer = [&] {
        std::string result;
        for (const std::string& name :
             {std::string("open"), home.path("open").path(), home.path("closed").path()})
            result += locator.locate(name) ? 'x' : '-';
        return result;
    };
    EXPECT_EQ(test::asOrdinaryUser(answer), "xx-");
}

TEST(ToolLocatorTest, ToolsOfTheHomeFolderAreFound) {
    const TempHome home;
    const URL node = home.tool(".nvm/versions/node/v20.11.0/bin/tidewright-test-node", "exit 0");
    home.tool(".volta/bin/tidewright-test-node", "exit 0");
    const URL pnpm = home.tool("Library/pnpm/tidewright-test-pnpm", "exit 0");
    const ToolLocator locator(home.url(), {});
    EXPECT_EQ(locator.locate("tidewright-test-node"), node);
    EXPECT_EQ(locator.locate("tidewright-test-pnpm"), pnpm);
    EXPECT_EQ(locator.locate("tidewright-test-missing"), std::nullopt);
}

TEST(ToolLocatorTest, EnvironmentIsThisProcesssOwnWithTheSearchPathAsPATH) {
    setenv("TIDEWRIGHT_TEST_VARIABLE", "a b=c", 1);
    ToolLocator locator;
    locator.searchPath = {"/a", "/b c", "/d"};
    const Environment environment = locator.environment();
    Environment expected = processEnvironment();
    unsetenv("TIDEWRIGHT_TEST_VARIABLE");
    EXPECT_EQ(environment.at("PATH"), "/a:/b c:/d");
    EXPECT_EQ(environment.at("TIDEWRIGHT_TEST_VARIABLE"), "a b=c");
    expected["PATH"] = "/a:/b c:/d";
    EXPECT_EQ(environment, expected);
}

} // namespace

} // namespace tidewright
