#include "cli/ProjectsCommand.h"

#include "core/support/Json.h"
#include "core/support/Text.h"
#include "tests/support/Program.h"
#include "tests/support/TempHome.h"

#include <gmock/gmock.h>

namespace tidewright {
namespace {

using test::runProgram;
using test::TempHome;

constexpr Date now = Date(std::chrono::days(20'000));

Project project() {
    Project project;
    project.url = URL("/home/ann/shop");
    project.name = "shop";
    project.kind = Project::Kind::expo;
    project.reactNativeVersion = "0.74.1";
    project.packageManager = "yarn";
    project.lastActivity = now - std::chrono::days(3);
    project.requirements = {{RequirementKind::gradle, "8.7", "gradle-wrapper.properties"},
                            {RequirementKind::ndk, "26.1.10909125", "react-native default"}};
    return project;
}

TEST(ProjectsCommand, NamesEachNeedWithItsSource) {
    Project plain;
    plain.url = URL("/home/ann/site");
    plain.name = "site";
    plain.kind = Project::Kind::node;
    EXPECT_EQ(projectsText({project(), plain}, now, Terminal{}),
              "shop, Expo, React Native 0.74.1, yarn, active 3 days ago\n"
              "  /home/ann/shop\n"
              "    Gradle 8.7         gradle-wrapper.properties\n"
              "    NDK 26.1.10909125  react-native default\n"
              "site, Node, no known activity\n"
              "  /home/ann/site\n");
}

TEST(ProjectsCommand, TellsActivityInDays) {
    const std::vector<std::pair<int, std::string>> ages{{-2, "active today"},
                                                        {0, "active today"},
                                                        {1, "active yesterday"},
                                                        {2, "active 2 days ago"}};
    for (const auto& [days, words] : ages) {
        Project aged = project();
        aged.lastActivity = now - std::chrono::days(days);
        EXPECT_THAT(projectsText({aged}, now, Terminal{}), testing::HasSubstr(words + "\n"));
    }
}

TEST(ProjectsCommand, SaysWhenThereIsNone) {
    EXPECT_EQ(projectsText({}, now, Terminal{}), "No projects were found.\n");
}

TEST(ProjectsCommand, FitsTheTerminal) {
    Project wide = project();
    wide.name = std::string(150, 'n');
    wide.url = URL("/" + std::string(150, 'p'));
    for (std::size_t columns = 40; columns < 120; ++columns)
        for (const std::string& line :
             nonEmptyLines(projectsText({wide}, now, Terminal{true, false, columns})))
            ASSERT_LE(displayWidth(line), columns);
}

TEST(ProjectsCommand, FindsTheProjectsBelowTheRoots) {
    const TempHome home;
    home.file("work/site/package.json", R"({"engines": {"node": ">=18"}})");
    home.file("other/tool/package.json", "{}");
    const ProcessOutput run = runProgram(home.url(), {"projects", "--root", "work", "--json"});
    EXPECT_EQ(run.exitCode, 0);
    const auto list = parseJson(run.output).value();
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0]["name"], "site");
    EXPECT_EQ(list[0]["kind"], "Node");
    EXPECT_EQ(list[0]["url"], home.path("work/site").path());
    EXPECT_EQ(list[0]["requirements"][0]["version"], ">=18");
    EXPECT_EQ(list[0]["requirements"][0]["source"], "package.json engines");
    EXPECT_EQ(runProgram(home.url(), {"projects", "--root", "gone"}).exitCode, 2);
}

} // namespace
} // namespace tidewright
