#include "app/state/SidebarModel.h"

#include "tests/support/app/ModelWatch.h"
#include "tests/support/app/StateTesting.h"

#include <gmock/gmock.h>

namespace tidewright {
namespace {

using test::columnOf;
using test::ModelWatch;
using test::testItem;
using test::TestState;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

class SidebarModelTest : public testing::Test {
protected:
    TestState m_state;
    SidebarModel m_model{*m_state.model};
    ModelWatch m_watch{m_model};

    AppModel& app() { return *m_state.model; }

    void scanned(const std::vector<Insight::Severity>& severities,
                 std::vector<ScanItem> items = {}) {
        ScanReport report;
        for (const Insight::Severity severity : severities) {
            Insight insight;
            insight.id = std::to_string(report.insights.size());
            insight.severity = severity;
            report.insights.push_back(insight);
        }
        report.items = std::move(items);
        m_state.scanned(std::move(report));
    }

    std::string badge() const { return columnOf(m_model, "badge")[1]; }
};

TEST_F(SidebarModelTest, ItsRowsStandInTheirSections) {
    EXPECT_THAT(columnOf(m_model, "destination"),
                ElementsAre("overview", "insights", "android", "xcode", "javascript", "projects",
                            "system", "apps", "history"));
    EXPECT_THAT(columnOf(m_model, "title"),
                ElementsAre("Overview", "Insights", "Android", "Xcode & iOS", "JavaScript",
                            "Projects", "System", "Apps & Files", "History"));
    EXPECT_THAT(columnOf(m_model, "symbolName"),
                ElementsAre("gauge.with.dots.needle.67percent", "sparkle.magnifyingglass", "cpu",
                            "hammer", "curlybraces", "folder", "macwindow", "square.grid.2x2",
                            "clock.arrow.circlepath"));
    EXPECT_THAT(columnOf(m_model, "section"),
                ElementsAre("", "", "Developer", "Developer", "Developer", "Developer", "Mac",
                            "Mac", "Mac"));
    EXPECT_THAT(columnOf(m_model, "badge"), Each(""));
    EXPECT_THAT(columnOf(m_model, "sizeText"), Each(""));
}

TEST_F(SidebarModelTest, TheBadgeCountsWhatIsMoreThanATip) {
    using Severity = Insight::Severity;
    scanned({Severity::critical, Severity::tip, Severity::notice, Severity::warning});
    EXPECT_EQ(badge(), "3");
    EXPECT_THAT(m_watch.told(), ElementsAre("changed 1-1"));
    scanned({Severity::tip});
    EXPECT_EQ(badge(), "") << "none is not shown";
    scanned({});
    EXPECT_EQ(badge(), "");
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(SidebarModelTest, ACategoryShowsTheSizeOfWhatIsSelectedInIt) {
    ScanItem optional = testItem(Category::projects, "build", 1);
    optional.decision = Decision::ask;
    scanned({}, {testItem(Category::xcode, "derived", 2'000'000), optional,
                 testItem(Category::system, "nothing", 0)});
    EXPECT_THAT(columnOf(m_model, "sizeText"), ElementsAre("", "", "", "2 MB", "", "", "", "", ""));
    (void)m_watch.told();
    app().setSelected(optional, true);
    EXPECT_EQ(columnOf(m_model, "sizeText")[5], "1 byte");
    EXPECT_THAT(m_watch.told(), ElementsAre("changed 5-5"));
    app().setSelected(optional, false);
    EXPECT_EQ(columnOf(m_model, "sizeText")[5], "");
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(SidebarModelTest, TheCurrentRowIsThatOfTheScreen) {
    EXPECT_EQ(m_model.currentRow(), 0);
    for (int row = m_model.count() - 1; row >= 0; --row) {
        m_model.open(row);
        EXPECT_EQ(app().destinationName().toStdString(),
                  columnOf(m_model, "destination")[static_cast<std::size_t>(row)]);
        EXPECT_EQ(m_model.currentRow(), row);
    }
    app().setDestination(Destination::category(Category::system));
    EXPECT_EQ(m_model.currentRow(), 6);
    for (const int none : {-1, m_model.count()})
        m_model.open(none);
    EXPECT_EQ(m_model.currentRow(), 6);
    EXPECT_THAT(m_watch.told(), IsEmpty());
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(SidebarModelTest, ItOutlivesTheAppModel) {
    scanned({Insight::Severity::warning});
    m_state.model.reset();
    m_model.open(3);
    EXPECT_EQ(m_model.currentRow(), 0);
    EXPECT_EQ(badge(), "1");
    EXPECT_EQ(m_watch.complaint(), "");
}

} // namespace
} // namespace tidewright
