#include "app/state/ProjectListModel.h"

#include "tests/support/app/ModelWatch.h"
#include "tests/support/app/StateTesting.h"

#include <gmock/gmock.h>

namespace tidewright {
namespace {

using namespace std::chrono_literals;
using test::columnOf;
using test::ModelWatch;
using test::TestState;
using testing::ElementsAre;

constexpr Date now(1'700'000'000s);

Project project(const std::string& name, Project::Kind kind = Project::Kind::reactNative) {
    Project project;
    project.url = URL("/home/test/" + name);
    project.name = name;
    project.kind = kind;
    return project;
}

class ProjectListModelTest : public testing::Test {
protected:
    std::vector<std::vector<URL>> m_revealed;
    TestState m_state{[this](AppEnvironment& environment) {
        environment.reveal = [this](const std::vector<URL>& urls) { m_revealed.push_back(urls); };
    }};
    ProjectListModel m_model{*m_state.model, [] { return now; }};
    ModelWatch m_watch{m_model};

    void scanned(std::vector<Project> projects) {
        ScanReport report;
        report.projects = std::move(projects);
        m_state.scanned(std::move(report));
    }
};

TEST_F(ProjectListModelTest, ProjectsOfNodeThatNeedNothingAreLeftOut) {
    Project pinned = project("pinned", Project::Kind::node);
    pinned.requirements = {{RequirementKind::node, "20", ".nvmrc"}};
    scanned({project("a"), project("plain", Project::Kind::node), pinned,
             project("b", Project::Kind::ios)});
    EXPECT_THAT(columnOf(m_model, "name"), ElementsAre("a", "pinned", "b"));
    EXPECT_THAT(columnOf(m_model, "kind"), ElementsAre("React Native", "Node", "iOS"));
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(ProjectListModelTest, TheAgeIsToldInDays) {
    Project today = project("today");
    today.lastActivity = now - 23h;
    Project before = project("before");
    before.lastActivity = now - 25h;
    Project old = project("old");
    old.lastActivity = now - 24h * 90;
    scanned({today, before, old, project("unknown")});
    EXPECT_THAT(columnOf(m_model, "activityText"),
                ElementsAre("Changed today", "Changed 1 days ago", "Changed 90 days ago", ""));
    EXPECT_THAT(columnOf(m_model, "lastActivity"),
                ElementsAre("1699917200", "1699910000", "1692224000", ""));
}

TEST_F(ProjectListModelTest, NeedsAreALineAndWhereTheyComeFromTheHelp) {
    Project needy = project("needy");
    needy.requirements = {{RequirementKind::gradle, "8.7", "gradle-wrapper.properties"},
                          {RequirementKind::node, "20", ".nvmrc"},
                          {RequirementKind::iosRuntime, "17.0", "Podfile"}};
    Project node = project("node", Project::Kind::node);
    node.requirements = {{RequirementKind::node, "20", ".nvmrc"}};
    scanned({needy, node, project("bare")});
    EXPECT_THAT(
        columnOf(m_model, "requirements"),
        ElementsAre("Gradle 8.7 · iOS runtime 17.0", "No pinned toolchain", "No pinned toolchain"));
    EXPECT_THAT(columnOf(m_model, "requirementsHelp"),
                ElementsAre("Gradle 8.7 — from gradle-wrapper.properties\n"
                            "Node 20 — from .nvmrc\n"
                            "iOS runtime 17.0 — from Podfile",
                            "Node 20 — from .nvmrc", ""));
}

TEST_F(ProjectListModelTest, APathThatIsNotUTF8IsShownInTheFileManager) {
    Project odd = project("odd\xff");
    odd.url = m_state.home.folder("odd\xff");
    scanned({odd});
    EXPECT_THAT(columnOf(m_model, "name"), ElementsAre("odd\xef\xbf\xbd"));
    m_model.reveal(0);
    m_model.reveal(1);
    EXPECT_THAT(m_revealed, ElementsAre(ElementsAre(odd.url)));
}

TEST_F(ProjectListModelTest, ItOutlivesTheAppModel) {
    scanned({project("a")});
    m_state.model.reset();
    m_state.prepared.reset();
    EXPECT_THAT(columnOf(m_model, "name"), ElementsAre("a"));
    m_model.reveal(0);
    EXPECT_EQ(m_watch.complaint(), "");
}

} // namespace
} // namespace tidewright
