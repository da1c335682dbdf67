#include "core/probes/Tools.h"

#include "tests/support/TempHome.h"

#include <gmock/gmock.h>

namespace tidewright {
namespace {

using test::TempHome;
using testing::ElementsAre;

constexpr const char* mark = ".sample-home/about.txt";

TEST(Tools, ASampleHomeIsToldByItsMark) {
    const TempHome home;
    EXPECT_FALSE(isSampleHome(home.url()));
    home.folder("other/.sample-home/about.txt");
    EXPECT_FALSE(isSampleHome(home.path("other")));
    home.file("elsewhere");
    home.link("linked/.sample-home/about.txt", home.path("elsewhere").path());
    EXPECT_FALSE(isSampleHome(home.path("linked")));
    home.file(mark);
    EXPECT_TRUE(isSampleHome(home.url()));
}

TEST(Tools, ASampleHomeHasItsOwnToolsAndThoseOfTheSystem) {
    ToolLocator tools;
    tools.searchPath = {
        "/opt/homebrew/bin", "/homes/ann2/bin",       "/homes/ann/b", "/usr/local/bin",
        "/usr/bin",          "/homes/ann/../bob/bin", "/homes/ann/a", "/sbin"};
    for (const char* home : {"/homes/ann", "/homes/ann/"})
        EXPECT_THAT(
            confinedTo(URL(home), tools).searchPath,
            ElementsAre("/homes/ann/b", "/homes/ann/a", "/usr/bin", "/bin", "/usr/sbin", "/sbin"));
}

TEST(Tools, NoOtherToolIsFoundInASampleHome) {
    const TempHome home;
    const TempHome machine;
    machine.tool("bin/brew", "exit 1");
    machine.tool("bin/npm", "exit 1");
    home.tool(".volta/bin/npm", "exit 0");
    const Environment environment{{"PATH", machine.path("bin").path()}};

    const ShellRunner before = runnerFor(home.url(), environment);
    EXPECT_EQ(before.locator.locate("brew"), machine.path("bin/brew"));
    EXPECT_EQ(before.locator.searchPath, ToolLocator(home.url(), environment).searchPath);

    home.file(mark);
    const ShellRunner runner = runnerFor(home.url(), environment);
    EXPECT_FALSE(runner.isAvailable("brew"));
    EXPECT_EQ(runner.locator.locate("npm"), home.path(".volta/bin/npm"));
    EXPECT_TRUE(runner.isAvailable("ps"));
}

} // namespace
} // namespace tidewright
