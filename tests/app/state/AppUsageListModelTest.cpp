#include "app/state/AppUsageListModel.h"

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

AppUsage app(const std::string& name, std::optional<int> idleDays, Int64 bytes = 1) {
    AppUsage app;
    app.url = URL("/Applications/" + name + ".app");
    app.name = name;
    app.sizeBytes = bytes;
    if (idleDays)
        app.lastUsed = now - 24h * *idleDays;
    return app;
}

class AppUsageListModelTest : public testing::Test {
protected:
    std::vector<std::vector<URL>> m_revealed;
    TestState m_state{[this](AppEnvironment& environment) {
        environment.reveal = [this](const std::vector<URL>& urls) { m_revealed.push_back(urls); };
    }};
    AppUsageListModel m_model{*m_state.model, [] { return now; }};
    ModelWatch m_watch{m_model};

    void scanned(std::vector<AppUsage> apps) {
        ScanReport report;
        report.apps = std::move(apps);
        m_state.scanned(std::move(report));
    }
};

TEST_F(AppUsageListModelTest, TheLastUseIsToldInWords) {
    AppUsage added = app("Added", std::nullopt);
    added.addedOn = now - 24h * 2;
    m_model.setShowAll(true);
    scanned({app("Used", 1), added, app("Unknown", std::nullopt)});
    EXPECT_THAT(columnOf(m_model, "dateText"),
                ElementsAre("yesterday", "Never (added 2 days ago)", "Never"));
}

TEST_F(AppUsageListModelTest, OnlyWhatWasNotUsedForLongIsShown) {
    m_state.model->settings().setUnusedAppDays(30);
    AppUsage never = app("Never", std::nullopt, 40);
    never.addedOn = now - 24h * 400;
    scanned({app("Just", 30, 1), app("Not", 29, 10), app("Unknown", std::nullopt, 100), never});
    EXPECT_THAT(columnOf(m_model, "name"), ElementsAre("Just", "Never"));
    EXPECT_EQ(m_model.shown().bytes, 41);
    m_watch.told();
    m_model.setShowAll(true);
    EXPECT_THAT(columnOf(m_model, "name"), ElementsAre("Just", "Not", "Unknown", "Never"));
    EXPECT_EQ(m_model.shown().bytes, 151);
    EXPECT_THAT(m_watch.told(), ElementsAre("inserted 1-2"));
    m_model.setShowAll(false);
    EXPECT_THAT(m_watch.told(), ElementsAre("removed 1-2"));
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(AppUsageListModelTest, AChangedSettingCountsAtOnce) {
    m_state.model->settings().setUnusedAppDays(30);
    scanned({app("a", 20), app("b", 40)});
    m_state.model->settings().setUnusedAppDays(20);
    EXPECT_THAT(columnOf(m_model, "name"), ElementsAre("a", "b"));
    m_state.model->settings().setUnusedAppDays(0);
    scanned({app("unknown", std::nullopt)});
    EXPECT_THAT(columnOf(m_model, "name"), ElementsAre("unknown"));
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(AppUsageListModelTest, ARowShowsItsApplication) {
    AppUsage each = app("Editor\xff", 400, 1'500'000);
    each.addedOn = now - 24h * 500;
    scanned({each, app("Other", 500)});
    EXPECT_EQ(columnOf(m_model, "name").front(), "Editor\xef\xbf\xbd");
    EXPECT_EQ(columnOf(m_model, "path").back(), "/Applications/Other.app");
    EXPECT_EQ(columnOf(m_model, "folder").back(), "/Applications");
    EXPECT_THAT(columnOf(m_model, "date"), ElementsAre("1665440000", "1656800000"));
    EXPECT_THAT(columnOf(m_model, "sizeText"), ElementsAre("1.5 MB", "1 byte"));
    EXPECT_THAT(columnOf(m_model, "sizeBytes"), ElementsAre("1500000", "1"));
    EXPECT_EQ(m_model.headerData(1, Qt::Horizontal, Qt::DisplayRole).toString().toStdString(),
              "Last opened");
}

TEST_F(AppUsageListModelTest, AllApplicationsStandInTheOrderThatWasAskedFor) {
    m_state.model->settings().setUnusedAppDays(30);
    AppUsage added = app("Added", std::nullopt, 30);
    added.addedOn = now - 24h * 50;
    scanned({added, app("Old", 90, 40), app("Today", 0, 10), app("Older", 100, 20)});
    m_model.sort(1);
    EXPECT_THAT(columnOf(m_model, "name"), ElementsAre("Older", "Old", "Added"));
    m_watch.told();
    m_model.setShowAll(true);
    EXPECT_THAT(columnOf(m_model, "name"), ElementsAre("Older", "Old", "Today", "Added"));
    EXPECT_THAT(m_watch.told(), ElementsAre("inserted 2-2"));
    m_model.setFocusedRow(3);
    m_model.setShowAll(false);
    EXPECT_EQ(m_model.focusedRow(), 2);
    m_model.setShowAll(true);
    m_model.setFocusedRow(2);
    m_model.setShowAll(false);
    EXPECT_EQ(m_model.focusedRow(), -1);
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(AppUsageListModelTest, WithoutRowsItSaysWhy) {
    EXPECT_EQ(m_model.empty().title.toStdString(), "Not scanned yet");
    EXPECT_EQ(m_model.empty().symbolName.toStdString(), "app.dashed");
    EXPECT_EQ(m_model.empty().message.toStdString(),
              "Scan your Mac to see apps you haven't used lately.");
    m_state.model->settings().setUnusedAppDays(45);
    scanned({app("a", 1)});
    EXPECT_EQ(m_model.empty().title.toStdString(), "");
    EXPECT_EQ(m_model.empty().symbolName.toStdString(), "checkmark.circle");
    EXPECT_EQ(m_model.empty().message.toStdString(), "Every app was opened in the last 45 days.");
    m_model.setShowAll(true);
    EXPECT_EQ(m_model.empty().message.toStdString(), "");
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(AppUsageListModelTest, AnApplicationIsShownInTheFileManager) {
    AppUsage each = app("a", 1000);
    each.url = m_state.home.folder("odd\xff.app");
    scanned({each});
    m_model.reveal(0);
    m_model.reveal(-1);
    EXPECT_THAT(m_revealed, ElementsAre(ElementsAre(each.url)));
}

TEST_F(AppUsageListModelTest, ItOutlivesTheAppModel) {
    scanned({app("a", 0), app("b", 1000)});
    m_state.model.reset();
    m_state.prepared.reset();
    m_model.setShowAll(true);
    m_model.reveal(0);
    EXPECT_THAT(columnOf(m_model, "name"), ElementsAre("a", "b"));
    EXPECT_EQ(m_watch.complaint(), "");
}

} // namespace
} // namespace tidewright
