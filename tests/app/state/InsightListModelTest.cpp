#include "app/state/InsightListModel.h"

#include "tests/support/app/EventLoop.h"
#include "tests/support/app/ModelWatch.h"
#include "tests/support/app/StateTesting.h"

#include <gmock/gmock.h>

namespace tidewright {
namespace {

using test::columnOf;
using test::ModelWatch;
using test::TestState;
using testing::ElementsAre;
using testing::IsEmpty;
using Severity = Insight::Severity;

Insight insight(const std::string& id, Severity severity = Severity::notice) {
    Insight insight;
    insight.id = id;
    insight.severity = severity;
    insight.title = "Title of " + id;
    insight.message = "Message of " + id;
    insight.symbolName = "sparkles";
    return insight;
}

class InsightListModelTest : public testing::Test {
protected:
    TestState m_state;
    InsightListModel m_model{*m_state.model};
    ModelWatch m_watch{m_model};

    void scanned(std::vector<Insight> insights, std::vector<ScanItem> items = {}) {
        ScanReport report;
        report.insights = std::move(insights);
        report.items = std::move(items);
        m_state.scanned(std::move(report));
    }
};

TEST_F(InsightListModelTest, BeforeAScanItSaysSo) {
    EXPECT_EQ(m_model.empty().title.toStdString(), "Not scanned yet");
    EXPECT_EQ(m_model.empty().symbolName.toStdString(), "sparkle.magnifyingglass");
    EXPECT_EQ(m_model.empty().message.toStdString(), "Scan your Mac to see what needs attention.");
    scanned({});
    EXPECT_TRUE(m_model.empty().title.isEmpty());
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(InsightListModelTest, ARowShowsWhatItsInsightSays) {
    Insight full = insight("full", Severity::critical);
    full.estimatedGain = 1'500'000;
    full.actionTitle = "Review";
    full.action = Insight::Action::review({"a"});
    Insight idle = insight("idle", Severity::tip);
    idle.actionTitle = "Do nothing";
    Insight untitled = insight("untitled", Severity::warning);
    untitled.action = Insight::Action::open(Insight::Destination::apps);
    scanned({full, idle, untitled});
    EXPECT_THAT(columnOf(m_model, "insightID"), ElementsAre("full", "idle", "untitled"));
    EXPECT_THAT(columnOf(m_model, "severity"), ElementsAre("critical", "tip", "warning"));
    EXPECT_EQ(columnOf(m_model, "symbolName").front(), "sparkles");
    EXPECT_EQ(columnOf(m_model, "title").front(), "Title of full");
    EXPECT_EQ(columnOf(m_model, "message").front(), "Message of full");
    EXPECT_THAT(columnOf(m_model, "gainBytes"), ElementsAre("1500000", "0", "0"));
    EXPECT_THAT(columnOf(m_model, "gainText"), ElementsAre("1.5 MB", "", ""));
    EXPECT_THAT(columnOf(m_model, "actionTitle"), ElementsAre("Review", "", ""));
    EXPECT_EQ(m_model.total(), 3);
    EXPECT_EQ(m_model.notableCount(), 2);
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(InsightListModelTest, TheLimitHoldsBackTheRest) {
    scanned({insight("a"), insight("b"), insight("c"), insight("d"), insight("e")});
    m_model.setLimit(4);
    EXPECT_THAT(columnOf(m_model, "insightID"), ElementsAre("a", "b", "c", "d"));
    EXPECT_EQ(m_model.total(), 5);
    m_model.setLimit(-1);
    EXPECT_THAT(m_watch.told(), ElementsAre("inserted 0-4", "removed 4-4", "inserted 4-4"));
    m_model.setLimit(0);
    EXPECT_EQ(m_model.count(), 0);
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(InsightListModelTest, ThereAreMoreThanAreShownAboveTheLimitOnly) {
    m_model.setLimit(4);
    EXPECT_FALSE(m_model.hasMore());
    scanned({insight("a"), insight("b"), insight("c"), insight("d")});
    EXPECT_FALSE(m_model.hasMore());
    EXPECT_EQ(m_model.count(), 4);
    scanned({insight("a"), insight("b"), insight("c"), insight("d"), insight("e")});
    EXPECT_TRUE(m_model.hasMore());
    EXPECT_EQ(m_model.count(), 4);
    m_model.setLimit(5);
    EXPECT_FALSE(m_model.hasMore());
    m_model.setLimit(3);
    EXPECT_TRUE(m_model.hasMore());
    m_model.setLimit(-1);
    EXPECT_FALSE(m_model.hasMore());
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(InsightListModelTest, OneThatIsLeftOutTakesNoRow) {
    scanned({insight("a"), insight("b"), insight("c")});
    m_model.setLimit(2);
    m_watch.told();
    m_model.leaveOut("a");
    EXPECT_THAT(columnOf(m_model, "insightID"), ElementsAre("b", "c"));
    EXPECT_FALSE(m_model.hasMore());
    EXPECT_EQ(m_model.total(), 3);
    scanned({insight("a"), insight("b"), insight("c"), insight("d")});
    EXPECT_THAT(columnOf(m_model, "insightID"), ElementsAre("b", "c"));
    EXPECT_TRUE(m_model.hasMore());
    m_model.setLimit(-1);
    EXPECT_THAT(columnOf(m_model, "insightID"), ElementsAre("b", "c", "d"));
    EXPECT_FALSE(m_model.hasMore());
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(InsightListModelTest, InsightsThatStaySayWhatIsNewOfThem) {
    scanned({insight("a"), insight("b"), insight("c")});
    m_watch.told();
    Insight changed = insight("c");
    changed.message = "Less than before";
    scanned({insight("a"), changed});
    EXPECT_THAT(m_watch.told(), ElementsAre("removed 1-1", "changed 1-1"));
    scanned({insight("a"), changed});
    EXPECT_THAT(m_watch.told(), IsEmpty());
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(InsightListModelTest, AnInsightDoesWhatItProposes) {
    Insight open = insight("open");
    open.action = Insight::Action::open(Insight::Destination::apps);
    const ScanItem item = test::testItem(Category::system, "a");
    Insight review = insight("review");
    review.action = Insight::Action::review({item.id});
    scanned({open, review}, {item});
    m_model.perform(-1);
    m_model.perform(0);
    EXPECT_EQ(m_state.model->destination(), Destination::apps());
    m_model.perform(1);
    ASSERT_NE(m_state.model->session(), nullptr);
    EXPECT_THAT(m_state.model->session()->items(), ElementsAre(item));
}

TEST_F(InsightListModelTest, ItOutlivesTheAppModel) {
    scanned({insight("a"), insight("b")});
    m_state.model.reset();
    m_state.prepared.reset();
    m_model.perform(0);
    m_model.setLimit(1);
    EXPECT_THAT(columnOf(m_model, "title"), ElementsAre("Title of a"));
    EXPECT_EQ(m_watch.complaint(), "");
}

} // namespace
} // namespace tidewright
