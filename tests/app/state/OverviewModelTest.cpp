#include "app/state/OverviewModel.h"

#include "tests/support/app/EventLoop.h"
#include "tests/support/app/PropertyWatch.h"
#include "tests/support/app/StateTesting.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

namespace tidewright {
namespace {

using namespace std::chrono_literals;
using test::becomesTrue;
using test::testItem;
using test::TestState;
using testing::ElementsAre;
using testing::IsEmpty;

class OverviewModelTest : public testing::Test {
protected:
    DiskSpace m_disk{500 * gigabyte, 125 * gigabyte};
    bool m_hasAccess = true;
    TestState m_state{[this](AppEnvironment& environment) {
        environment.hasFullDiskAccess = [this] { return m_hasAccess; };
        environment.protectsUserFiles = true;
        environment.monitorSystem.readDisk = [this]() -> Result<DiskSpace, SystemError> {
            return m_disk;
        };
    }};
    OverviewModel m_model{*m_state.model};
    test::PropertyWatch m_watch{m_model};

    AppModel& app() { return *m_state.model; }

    void scanned(std::vector<ScanItem> items) {
        ScanReport report;
        report.items = std::move(items);
        m_state.scanned(std::move(report));
    }

    void measure(DiskSpace disk) {
        m_disk = disk;
        bool isDone = false;
        app().monitor().refresh([&isDone] { isDone = true; });
        ASSERT_TRUE(becomesTrue([&isDone] { return isDone; }));
    }
};

ScanItem item(Decision decision, const std::string& key, Int64 bytes) {
    ScanItem item = testItem(Category::system, key, bytes);
    item.decision = decision;
    return item;
}

TEST_F(OverviewModelTest, BeforeAScanThereIsNothingToSayOfOne) {
    EXPECT_FALSE(m_model.hasReport());
    EXPECT_FALSE(m_model.isScanning());
    EXPECT_EQ(m_model.scanTitle().toStdString(), "Scan My Mac");
    EXPECT_EQ(m_model.scanMessage() + m_model.scanFailure() + m_model.breakdownSubtitle(),
              QString());
    EXPECT_FALSE(m_model.hasSelection());
    EXPECT_EQ(m_model.selected().bytes, 0);
    EXPECT_FALSE(m_model.hasFreed());
}

TEST_F(OverviewModelTest, AReportTellsWhatWasScannedAndFound) {
    ScanReport report;
    report.projects.resize(14);
    report.duration = 9'300ms;
    report.items = {item(Decision::clean, "a", 3 * gigabyte), item(Decision::ask, "b", 20),
                    item(Decision::keep, "c", 300)};
    m_state.scanned(report);
    EXPECT_TRUE(m_model.hasReport());
    EXPECT_EQ(m_model.scanTitle().toStdString(), "Scan Again");
    EXPECT_EQ(m_model.breakdownSubtitle().toStdString(), "Scanned 14 projects in 9s");
    EXPECT_EQ(m_model.selected().bytes, 3 * gigabyte);
    EXPECT_EQ(m_model.optional().bytes, 20);
    EXPECT_TRUE(m_model.hasSelection());
    EXPECT_EQ(m_model.reviewTitle().toStdString(), "Review & Clean 3 GB");
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(OverviewModelTest, AnUnknownDiskIsShownAsNone) {
    EXPECT_FALSE(m_model.isDiskKnown());
    EXPECT_EQ(m_model.usedFraction(), 0);
    EXPECT_EQ(m_model.freeableFraction(), 0);
    EXPECT_EQ(m_model.health().toStdString(), "good");
    EXPECT_EQ(m_model.capacityLabel(), QString());
    EXPECT_EQ(m_model.orbLabel().toStdString(), "Disk 0 percent full, Healthy");
}

TEST_F(OverviewModelTest, AKnownDiskTellsHowFullItIs) {
    measure({494'400'000'000, 128'544'000'000});
    EXPECT_TRUE(m_model.isDiskKnown());
    EXPECT_DOUBLE_EQ(m_model.usedFraction(), 0.74);
    EXPECT_EQ(m_model.availableText().toStdString(), "128.54 GB");
    EXPECT_EQ(m_model.totalText().toStdString(), "available of 494.4 GB");
    EXPECT_EQ(m_model.usedText().toStdString(), "365.86 GB");
    EXPECT_EQ(m_model.orbLabel().toStdString(), "Disk 74 percent full, Healthy");
    EXPECT_EQ(m_model.capacityLabel().toStdString(),
              "365.86 GB used of 494.4 GB Zero KB selected to free");
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(OverviewModelTest, ADiskWithoutCapacityIsNotUsed) {
    measure({0, 0});
    EXPECT_TRUE(m_model.isDiskKnown());
    EXPECT_EQ(m_model.usedFraction(), 0);
    scanned({item(Decision::clean, "a", 5)});
    EXPECT_EQ(m_model.freeableFraction(), 0);
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(OverviewModelTest, PercentAreRounded) {
    const std::pair<Int64, const char*> cases[] = {
        {995, "Disk 1 percent full, "},
        {996, "Disk 0 percent full, "},
        {4, "Disk 100 percent full, "},
        {6, "Disk 99 percent full, "},
    };
    app().settings().setLowSpaceGB(1);
    for (const auto& [available, expected] : cases) {
        measure({1'000, available});
        EXPECT_TRUE(m_model.orbLabel().startsWith(QString::fromUtf8(expected)))
            << m_model.orbLabel().toStdString();
    }
}

TEST_F(OverviewModelTest, HealthFollowsTheDiskAndTheThresholds) {
    const auto shown = [this] {
        return std::vector{m_model.health().toStdString(), m_model.healthTitle().toStdString(),
                           m_model.healthSymbol().toStdString()};
    };
    app().settings().setLowSpaceGB(50);
    app().settings().setCriticalSpaceGB(10);
    measure({500 * gigabyte, 50 * gigabyte});
    EXPECT_THAT(shown(), ElementsAre("good", "Healthy", "checkmark.seal.fill"));
    measure({500 * gigabyte, 49 * gigabyte});
    EXPECT_THAT(shown(), ElementsAre("low", "Low space", "exclamationmark.triangle.fill"));
    measure({500 * gigabyte, 9 * gigabyte});
    EXPECT_THAT(shown(), ElementsAre("critical", "Almost full", "exclamationmark.triangle.fill"));
    EXPECT_TRUE(m_model.orbLabel().endsWith(QStringLiteral("98 percent full, Almost full")));
    app().settings().setCriticalSpaceGB(5);
    EXPECT_THAT(shown(), ElementsAre("low", "Low space", "exclamationmark.triangle.fill"));
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(OverviewModelTest, WhatCanBeFreedIsAtMostWhatIsUsed) {
    measure({1'000, 600});
    scanned({item(Decision::clean, "a", 100), item(Decision::ask, "b", 500)});
    EXPECT_DOUBLE_EQ(m_model.freeableFraction(), 0.1);
    EXPECT_EQ(m_model.capacityLabel().toStdString(),
              "400 bytes used of 1 KB 100 bytes selected to free");
    (void)m_watch.told();
    app().setSelected(app().report()->items[1], true);
    EXPECT_DOUBLE_EQ(m_model.freeableFraction(), 0.4);
    EXPECT_THAT(m_watch.told(), ElementsAre("figuresChanged", "capacityChanged"));
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(OverviewModelTest, EachToggleIsToldOnce) {
    scanned({item(Decision::ask, "a", 5), item(Decision::ask, "empty", 0),
             item(Decision::ask, "empty too", 0)});
    const auto& items = app().report()->items;
    (void)m_watch.told();
    app().setSelected(items[1], true);
    EXPECT_TRUE(m_model.hasSelection());
    EXPECT_EQ(m_model.reviewTitle().toStdString(), "Review & Clean Zero KB");
    EXPECT_THAT(m_watch.told(), ElementsAre("figuresChanged"));
    app().setSelected(items[2], true);
    EXPECT_THAT(m_watch.told(), IsEmpty()) << "nothing shown has changed";
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(OverviewModelTest, WhatWasFreedIsOfAllCleanups) {
    CleanSummary summary;
    summary.outcomes = {{"a", "A", CleanOutcome::Status::cleaned(), 2 * gigabyte}};
    app().history().record(summary);
    EXPECT_TRUE(m_model.hasFreed());
    EXPECT_EQ(m_model.freed().bytes, 2 * gigabyte);
    app().history().record(summary);
    EXPECT_EQ(m_model.freed().text().toStdString(), "4 GB");
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(OverviewModelTest, FullDiskAccessIsAskedForUntilItIsGiven) {
    EXPECT_FALSE(m_model.asksForFullDiskAccess());
    m_hasAccess = false;
    app().checkFullDiskAccess();
    EXPECT_TRUE(m_model.asksForFullDiskAccess());
    m_hasAccess = true;
    app().checkFullDiskAccess();
    app().checkFullDiskAccess();
    EXPECT_FALSE(m_model.asksForFullDiskAccess());
    EXPECT_THAT(m_watch.told(),
                ElementsAre("asksForFullDiskAccessChanged", "asksForFullDiskAccessChanged"));
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(OverviewModelTest, ItOutlivesTheAppModel) {
    scanned({item(Decision::clean, "a", 5)});
    m_state.model.reset();
    EXPECT_EQ(m_model.selected().bytes, 5);
    EXPECT_EQ(m_model.scanTitle().toStdString(), "Scan Again");
    EXPECT_EQ(m_watch.complaint(), "");
}

/// With scans that wait for the test and then end as it says.
class OverviewModelScanTest : public testing::Test {
protected:
    std::atomic<bool> m_isReleased = false;
    Result<ScanReport, ScanFailure> m_outcome{ScanReport()}; ///< written while no scan runs
    TestState m_state{[this](AppEnvironment& environment) {
        environment.scan = [this](const DiskScanner&, const DiskScanner::Progress& progress,
                                  const CancelToken& cancel) -> Result<ScanReport, ScanFailure> {
            progress({ScanProgress::Phase::measuring, 0.5, "Measuring…"});
            while (!m_isReleased && !cancel.isCancelled())
                std::this_thread::sleep_for(1ms);
            if (cancel.isCancelled())
                return Failure(ScanFailure{});
            return m_outcome;
        };
    }};
    OverviewModel m_model{*m_state.model};
    test::PropertyWatch m_watch{m_model};

    void beginScan() {
        m_isReleased = false;
        m_state.model->scan();
        EXPECT_TRUE(m_model.isScanning());
        ASSERT_TRUE(becomesTrue([this] { return m_model.scanFraction() == 0.5; }));
        EXPECT_EQ(m_model.scanMessage().toStdString(), "Measuring…");
    }
    void endScan() {
        m_isReleased = true;
        ASSERT_TRUE(becomesTrue([this] { return !m_model.isScanning(); }));
        EXPECT_EQ(m_model.scanMessage(), QString());
        EXPECT_EQ(m_model.scanFraction(), 0);
    }
};

TEST_F(OverviewModelScanTest, ARescanShowsItsProgressBesideTheOldReport) {
    beginScan();
    EXPECT_FALSE(m_model.hasReport());
    EXPECT_EQ(m_model.scanTitle().toStdString(), "Scan My Mac");
    endScan();
    EXPECT_TRUE(m_model.hasReport());
    const QString before = m_model.breakdownSubtitle();
    beginScan();
    EXPECT_TRUE(m_model.hasReport());
    EXPECT_EQ(m_model.scanTitle().toStdString(), "Scan Again");
    EXPECT_EQ(m_model.breakdownSubtitle(), before);
    endScan();
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(OverviewModelScanTest, AFailureIsSaidUntilTheNextScan) {
    m_outcome = Failure(ScanFailure{"The disk could not be read."});
    beginScan();
    endScan();
    EXPECT_EQ(m_model.scanFailure().toStdString(), "The disk could not be read.");
    EXPECT_FALSE(m_model.hasReport());
    m_outcome = ScanReport();
    beginScan();
    EXPECT_EQ(m_model.scanFailure(), QString());
    endScan();
    EXPECT_EQ(m_watch.complaint(), "");
}

TEST_F(OverviewModelScanTest, ACancelledScanIsNoFailure) {
    beginScan();
    m_state.model->cancelScan();
    EXPECT_FALSE(m_model.isScanning());
    EXPECT_EQ(m_model.scanFailure(), QString());
    EXPECT_EQ(m_watch.complaint(), "");
}

} // namespace
} // namespace tidewright
