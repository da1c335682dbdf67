#include "app/state/MenuBarModel.h"

#include "tests/support/app/EventLoop.h"
#include "tests/support/app/ModelWatch.h"
#include "tests/support/app/StateTesting.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

namespace tidewright {
namespace {

using namespace std::chrono_literals;
using test::becomesTrue;
using test::columnOf;
using test::testItem;
using test::TestState;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(CompactText, HasADecimalOnlyBelowTenGigabytes) {
    const std::pair<Int64, const char*> cases[] = {
        {0, "0.0 GB"},
        {49'999'999, "0.0 GB"},
        {50'000'001, "0.1 GB"},
        {4'200'000'000, "4.2 GB"},
        {9'940'000'000, "9.9 GB"},
        {9'960'000'000, "10.0 GB"},
        {9'999'999'999, "10.0 GB"},
        {10'000'000'000, "10 GB"},
        {10'400'000'000, "10 GB"},
        {10'500'000'000, "11 GB"},
        {12'500'000'000, "13 GB"}, // half is rounded up, also to an odd number
        {128'400'000'000, "128 GB"},
        {1'999'600'000'000, "2000 GB"},
    };
    for (const auto& [bytes, text] : cases)
        EXPECT_EQ(compactText(bytes).toStdString(), text) << bytes;
}

class MenuBarModelTest : public testing::Test {
protected:
    std::optional<DiskSpace> m_disk = DiskSpace{500 * gigabyte, 128'400'000'000};
    std::optional<Int64> m_trash;
    Date m_now = Date(1'772'366'400s);
    std::atomic<bool> m_holdsScan = false;
    TestState m_state{[this](AppEnvironment& environment) {
        environment.monitorSystem.readDisk = [this]() -> Result<DiskSpace, SystemError> {
            if (!m_disk)
                return Failure(SystemError{});
            return *m_disk;
        };
        environment.monitorSystem.readTrashSize = [this](const CancelToken&) { return m_trash; };
        environment.monitorSystem.now = [this] { return m_now; };
        environment.scan = [this, scan = environment.scan](const DiskScanner& scanner,
                                                           const DiskScanner::Progress& progress,
                                                           const CancelToken& cancel) {
            while (m_holdsScan && !cancel.isCancelled())
                std::this_thread::sleep_for(1ms);
            return scan(scanner, progress, cancel);
        };
    }};
    MenuBarModel m_model{*m_state.model, [this] { return m_now; }};
    test::PropertyWatch m_watch{m_model};

    AppModel& app() { return *m_state.model; }

    void showFreeSpace() { app().settings().setShowFreeSpaceInMenuBar(true); }
    void measure() {
        bool isDone = false;
        app().monitor().refresh([&isDone] { isDone = true; });
        ASSERT_TRUE(becomesTrue([&isDone] { return isDone; }));
    }
    void scanned(std::vector<ScanItem> items, std::vector<Insight> insights = {}) {
        ScanReport report;
        report.items = std::move(items);
        report.insights = std::move(insights);
        m_state.scanned(std::move(report));
    }
};

TEST_F(MenuBarModelTest, AnUnknownDiskIsADash) {
    showFreeSpace();
    EXPECT_EQ(m_model.health().toStdString(), "good");
    EXPECT_EQ(m_model.pillText(), QString());
    EXPECT_EQ(m_model.sentence().toStdString(), "Tidewright, Healthy");
    EXPECT_EQ(m_model.availableText().toStdString(), "–");
    EXPECT_EQ(m_model.availableCaption().toStdString(), "available · Healthy");
    EXPECT_EQ(m_model.checkedText(), QString());
    m_disk.reset();
    measure();
    EXPECT_EQ(m_model.pillText(), QString());
    EXPECT_EQ(m_model.availableText().toStdString(), "–");
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(MenuBarModelTest, AKnownDiskIsSaidShortAndLong) {
    showFreeSpace();
    measure();
    EXPECT_EQ(m_model.pillText().toStdString(), "128 GB");
    EXPECT_EQ(m_model.sentence().toStdString(), "Tidewright, Healthy, 128 GB free");
    EXPECT_EQ(m_model.availableText().toStdString(), "128.4 GB");
    EXPECT_EQ(m_watch.complaint(), "");
    m_disk.reset(); // it can no longer be read
    measure();
    EXPECT_EQ(m_model.sentence().toStdString(), "Tidewright, Healthy");
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(MenuBarModelTest, TheWordFollowsTheDiskAndTheThresholds) {
    showFreeSpace();
    const std::tuple<Int64, const char*, const char*> cases[] = {
        {25'000'000'000, "good", "Healthy, 25 GB free"},
        {24'999'999'999, "low", "Low space, 25 GB free"},
        {10'000'000'000, "low", "Low space, 10 GB free"},
        {9'960'000'000, "critical", "Almost full, 10.0 GB free"},
        {0, "critical", "Almost full, 0.0 GB free"},
    };
    for (const auto& [bytes, health, sentence] : cases) {
        m_disk->availableBytes = bytes;
        measure();
        EXPECT_EQ(m_model.health().toStdString(), health) << bytes;
        EXPECT_EQ(m_model.sentence().toStdString(), std::string("Tidewright, ") + sentence);
    }
    EXPECT_EQ(m_model.availableCaption().toStdString(), "available · Almost full");
    app().settings().setCriticalSpaceGB(0);
    EXPECT_EQ(m_model.health().toStdString(), "low");
    EXPECT_EQ(m_model.availableCaption().toStdString(), "available · Low space");
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(MenuBarModelTest, TheFreeSpaceIsShownOnlyWhereTheUserWantsIt) {
    measure();
    EXPECT_EQ(m_model.pillText(), QString());
    EXPECT_EQ(m_model.sentence().toStdString(), "Tidewright, Healthy");
    EXPECT_EQ(m_model.availableText().toStdString(), "128.4 GB") << "the panel goes on showing it";
    EXPECT_EQ(m_watch.complaint(), "");
    showFreeSpace();
    EXPECT_EQ(m_model.pillText().toStdString(), "128 GB");
    EXPECT_EQ(m_watch.complaint(), "");
    app().settings().setShowFreeSpaceInMenuBar(false);
    EXPECT_EQ(m_model.pillText(), QString());
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(MenuBarModelTest, AnEmptyOrUnknownTrashIsNotMentioned) {
    measure();
    EXPECT_EQ(m_model.trashText(), QString());
    m_trash = 0;
    measure();
    EXPECT_EQ(m_model.trashText(), QString());
    m_trash = 1;
    measure();
    EXPECT_EQ(m_model.trashText().toStdString(), "Trash holds 1 byte");
    m_trash = 6'200'000'000;
    measure();
    EXPECT_EQ(m_model.trashText().toStdString(), "Trash holds 6.2 GB");
    EXPECT_EQ(m_watch.complaint(), "");
    m_trash.reset();
    measure();
    EXPECT_EQ(m_model.trashText(), QString());
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(MenuBarModelTest, TheTimeOfTheCheckGrowsOldOnlyBeforeEyes) {
    measure();
    EXPECT_EQ(m_model.checkedText().toStdString(), "Checked now");
    m_now += 5min;
    EXPECT_FALSE(m_model.isWatched());
    EXPECT_EQ(m_model.checkedText().toStdString(), "Checked now");
    m_watch.told();
    m_model.setWatched(true);
    EXPECT_EQ(m_model.checkedText().toStdString(), "Checked 5 minutes ago") << "at once";
    EXPECT_TRUE(m_model.isWatched());
    m_now += 1min;
    EXPECT_TRUE(becomesTrue(
        [this] { return m_model.checkedText() == QStringLiteral("Checked 6 minutes ago"); }));
    EXPECT_EQ(m_watch.complaint(), "");
    m_model.setWatched(true);
    m_watch.told();
    m_model.setWatched(false);
    EXPECT_THAT(m_watch.told(), ElementsAre("isWatchedChanged"));
    EXPECT_EQ(m_watch.complaint(), "");
    measure();
    EXPECT_EQ(m_model.checkedText().toStdString(), "Checked now") << "a new one is told anyhow";
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(MenuBarModelTest, TheNextStepIsAScanUntilSomethingIsSelected) {
    EXPECT_EQ(m_model.action().toStdString(), "scan");
    EXPECT_EQ(m_model.actionTitle().toStdString(), "Scan Now");
    const ScanItem item = testItem(Category::system, "a", 6 * gigabyte);
    scanned({item});
    EXPECT_EQ(m_model.action().toStdString(), "review");
    EXPECT_EQ(m_model.actionTitle().toStdString(), "Review 6 GB");
    app().setSelected(item, false);
    EXPECT_EQ(m_model.action().toStdString(), "scan");
    app().setSelected(item, true);
    EXPECT_EQ(m_model.action().toStdString(), "review");
    m_holdsScan = true;
    app().scan();
    EXPECT_EQ(m_model.action().toStdString(), "scanning");
    EXPECT_EQ(m_model.actionTitle().toStdString(), "Scanning…");
    EXPECT_EQ(m_watch.complaint(), "");
    m_holdsScan = false;
    EXPECT_TRUE(becomesTrue([this] { return m_model.action() == QStringLiteral("review"); }));
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(MenuBarModelTest, ASelectionOfNoSizeIsReviewedAllTheSame) {
    scanned({testItem(Category::system, "a", 0)});
    EXPECT_EQ(m_model.action().toStdString(), "review");
    EXPECT_EQ(m_model.actionTitle().toStdString(), "Review Zero KB");
    scanned({});
    EXPECT_EQ(m_model.action().toStdString(), "scan");
    EXPECT_EQ(m_watch.complaint(), "");
}

Insight insight(const std::string& id) {
    Insight insight;
    insight.id = id;
    return insight;
}

TEST_F(MenuBarModelTest, TheFirstThreeInsightsAreThoseThatAreNotHealthy) {
    EXPECT_EQ(m_model.insights()->count(), 0);
    scanned({}, {insight("healthy")});
    EXPECT_EQ(m_model.insights()->count(), 0);
    scanned({}, {insight("a"), insight("healthy"), insight("b"), insight("c"), insight("d")});
    EXPECT_THAT(columnOf(*m_model.insights(), "insightID"), ElementsAre("a", "b", "c"));
    EXPECT_TRUE(m_model.insights()->hasMore());
    scanned({}, {insight("healthy"), insight("b"), insight("c"), insight("d")});
    EXPECT_THAT(columnOf(*m_model.insights(), "insightID"), ElementsAre("b", "c", "d"));
    EXPECT_FALSE(m_model.insights()->hasMore());
}

TEST_F(MenuBarModelTest, ARowPerformsItsOwnInsight) {
    Insight second = insight("b");
    second.action = Insight::Action::open(Insight::Destination::apps);
    scanned({}, {insight("healthy"), insight("a"), second});
    m_model.insights()->perform(1);
    EXPECT_EQ(app().destination(), Destination::apps());
}

TEST_F(MenuBarModelTest, ItOutlivesTheAppModel) {
    showFreeSpace();
    measure();
    m_state.model.reset();
    m_now += 5min;
    m_model.setWatched(true);
    EXPECT_EQ(m_model.checkedText().toStdString(), "Checked now");
    EXPECT_EQ(m_model.sentence().toStdString(), "Tidewright, Healthy, 128 GB free");
    EXPECT_EQ(m_watch.complaint(), "");
}

} // namespace
} // namespace tidewright
