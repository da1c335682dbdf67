#include "app/state/HistoryListModel.h"

#include "core/support/DateText.h"
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

class HistoryListModelTest : public testing::Test {
protected:
    std::vector<std::vector<URL>> m_revealed;
    TestState m_state{[this](AppEnvironment& environment) {
        environment.reveal = [this](const std::vector<URL>& urls) { m_revealed.push_back(urls); };
    }};
    HistoryListModel m_model{*m_state.model};
    ModelWatch m_watch{m_model};

    int roleOf(const char* name) const { return m_model.roleNames().key(name); }

    /// A cleanup of one item that freed so much by estimate and by measure, and failed with others.
    void record(Int64 estimated,
                Int64 measured,
                int failures = 0,
                std::optional<URL> logFile = std::nullopt,
                Date date = Date(1'700'000'000s)) {
        CleanSummary summary;
        summary.date = date;
        summary.outcomes.push_back({"a", "A", CleanOutcome::Status::cleaned(), estimated});
        for (int i = 0; i < failures; ++i)
            summary.outcomes.push_back({"b", "B", CleanOutcome::Status::failed("no"), 1});
        summary.diskAfter.availableBytes = measured;
        summary.logFile = std::move(logFile);
        m_state.model->history().record(summary);
    }
};

TEST_F(HistoryListModelTest, WithoutCleanupsItSaysSo) {
    EXPECT_EQ(m_model.empty().title.toStdString(), "No cleanups yet");
    EXPECT_EQ(m_model.empty().symbolName.toStdString(), "clock.arrow.circlepath");
    EXPECT_EQ(m_model.empty().message.toStdString(),
              "Each cleanup is recorded here with an audit log of every path and command.");
    record(1, 1);
    EXPECT_TRUE(m_model.empty().title.isEmpty());
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(HistoryListModelTest, TheNewestStandsFirst) {
    record(1'000, 0);
    record(0, 2'500'000'000, 2, m_state.home.file("log"));
    const std::string bars = " barLeft barWidth barBottom barHeight";
    EXPECT_THAT(m_watch.told(), ElementsAre("inserted 0-0", "changed 0-0" + bars, "inserted 0-0",
                                            "changed 0-1" + bars));
    EXPECT_THAT(columnOf(m_model, "freedBytes"), ElementsAre("2500000000", "1000"));
    EXPECT_THAT(columnOf(m_model, "freedText"), ElementsAre("2.5 GB", "1 KB"));
    EXPECT_THAT(columnOf(m_model, "itemsText"),
                ElementsAre("1 items cleaned, 2 failed", "1 items cleaned"));
    EXPECT_THAT(columnOf(m_model, "itemCount"), ElementsAre("1", "1"));
    EXPECT_THAT(columnOf(m_model, "failures"), ElementsAre("2", "0"));
    EXPECT_THAT(columnOf(m_model, "hasLog"), ElementsAre("true", "false"));
    EXPECT_THAT(columnOf(m_model, "date"), ElementsAre("1700000000", "1700000000"));
    EXPECT_EQ(columnOf(m_model, "dateText").front(), dateAndTimeText(Date(1'700'000'000s)));
    EXPECT_EQ(m_model.totalFreed().bytes, 2'500'001'000);
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(HistoryListModelTest, AChartTakesTwoCleanups) {
    record(1, 1);
    EXPECT_FALSE(m_model.hasChart());
    EXPECT_EQ(m_model.cleanups().toStdString(), "freed across 1 cleanups");
    record(1, 1);
    EXPECT_TRUE(m_model.hasChart());
    EXPECT_EQ(m_model.cleanups().toStdString(), "freed across 2 cleanups");
}

TEST_F(HistoryListModelTest, RowsStandByDateWhateverTheOrderOfTheRecord) {
    const Date date(1'700'000'000s);
    record(2, 0, 0, std::nullopt, date + 48h);
    record(1, 0, 0, std::nullopt, date);
    record(3, 0, 0, std::nullopt, date + 48h); // the later record of one moment counts as newer
    EXPECT_THAT(columnOf(m_model, "freedBytes"), ElementsAre("3", "2", "1"));
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(HistoryListModelTest, TheFocusFollowsItsCleanup) {
    record(1, 1);
    m_model.setFocusedRow(0);
    record(2, 2);
    EXPECT_EQ(m_model.focusedRow(), 1);
    EXPECT_EQ(m_model.rowStartingWith(QStringLiteral("1"), -1), -1);
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(HistoryListModelTest, TheChartIsLaidOutForItsRoom) {
    const Date date(1'700'000'000s);
    const auto width = [&] { return m_model.index(0, 0).data(roleOf("barWidth")).toDouble(); };
    record(2'000'000'000, 0, 0, std::nullopt, date);
    record(4'000'000'000, 0, 0, std::nullopt, date + 24h * 1'000);
    m_watch.told();
    m_model.setPlotWidth(560);
    m_model.setDateWidth(50);
    EXPECT_DOUBLE_EQ(width(), 28.0 / 560);
    EXPECT_EQ(m_model.sizeTicks().size(), 5); // 0 to 4
    const auto count = m_model.dateTicks().size();
    EXPECT_GE(count, 2);
    m_model.setPlotWidth(280);
    EXPECT_DOUBLE_EQ(width(), 28.0 / 280);
    EXPECT_LT(m_model.dateTicks().size(), count);
    m_model.setPlotWidth(280);
    EXPECT_THAT(m_watch.told(), ElementsAre("changed 0-1 barLeft barWidth barBottom barHeight",
                                            "changed 0-1 barLeft barWidth barBottom barHeight"));
    EXPECT_GE(m_model.sampleDates().size(), 12);
    for (const double none : {0.0, -1.0, 1.0}) {
        m_model.setPlotWidth(none);
        EXPECT_LE(width(), 0.25);
        EXPECT_EQ(m_model.dateTicks().size(), 1);
    }
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(HistoryListModelTest, ThePointerMeansTheRowOfABar) {
    const Date date(1'700'000'000s);
    record(2'000'000'000, 0, 0, std::nullopt, date + 24h * 10);
    record(1'000'000'000, 0, 0, std::nullopt, date);
    m_model.setPlotWidth(600);
    const double first = 14.0 / 600; // from the edge to the middle of a bar
    EXPECT_EQ(m_model.rowAt(first, 0.1), 1);
    EXPECT_EQ(m_model.rowAt(1 - first, 0.1), 0);
    EXPECT_EQ(m_model.rowAt(0.5, 0.1), -1);
}

TEST_F(HistoryListModelTest, TheLogIsShownInTheFileManager) {
    const URL log = m_state.home.file("log\xff");
    record(1, 1, 0, log);
    record(1, 1);
    m_model.revealLog(0);
    m_model.revealLog(1);
    m_model.revealLog(2);
    EXPECT_THAT(m_revealed, ElementsAre(ElementsAre(log)));
}

TEST_F(HistoryListModelTest, ItOutlivesTheAppModel) {
    record(1'000, 0);
    m_state.model.reset();
    m_model.revealLog(0);
    EXPECT_THAT(columnOf(m_model, "freedText"), ElementsAre("1 KB"));
    EXPECT_EQ(m_model.totalFreed().bytes, 1'000);
    EXPECT_EQ(m_watch.complaint(), "");
}

} // namespace
} // namespace tidewright
