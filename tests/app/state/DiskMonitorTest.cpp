#include "app/state/DiskMonitor.h"

#include "tests/support/TempHome.h"
#include "tests/support/app/EventLoop.h"

#include <QSignalSpy>
#include <gmock/gmock.h>

namespace tidewright {
namespace {

using namespace std::chrono_literals;
using test::becomesTrue;
using test::TempHome;
using testing::ElementsAre;
using testing::IsEmpty;
using Health = DiskSpace::Health;

constexpr Int64 enough = 100 * gigabyte;

class DiskMonitorTest : public testing::Test {
protected:
    TempHome m_home;
    Workers m_workers;
    DefaultsStore m_defaults{DefaultsStore::inFile(m_home.path("settings.conf"))};
    SettingsStore m_settings{m_defaults};

    // What the machine answers.
    std::optional<Int64> m_available = enough;
    std::optional<Int64> m_trash = 0;
    Date m_now{std::chrono::sys_days{std::chrono::year{2026} / 3 / 1}};
    bool m_accepts = true;
    // What it was asked.
    std::vector<Notification> m_posted;
    int m_diskReadings = 0;
    std::vector<std::function<void()>> m_wakeUps;

    DiskMonitorSystem system() {
        return {.readDisk = [this]() -> Result<DiskSpace, SystemError> {
                    ++m_diskReadings;
                    if (!m_available)
                        return Failure(SystemError{5, "read", "/"});
                    return DiskSpace{500 * gigabyte, *m_available};
                },
                .readTrashSize = [this](const CancelToken&) { return m_trash; },
                .now = [this] { return m_now; },
                .post =
                    [this](const Notification& notification, std::function<void(bool)> done) {
                        m_posted.push_back(notification);
                        done(m_accepts);
                    },
                .onWakeUp =
                    [this](QObject*, std::function<void()> function) {
                        m_wakeUps.push_back(std::move(function));
                    }};
    }

    /// The ids posted by one refresh.
    std::vector<std::string> postedBy(DiskMonitor& monitor) {
        m_posted.clear();
        bool isDone = false;
        monitor.refresh([&] { isDone = true; });
        EXPECT_TRUE(becomesTrue([&] { return isDone; }));
        std::vector<std::string> ids;
        for (const Notification& each : m_posted)
            ids.push_back(each.id);
        return ids;
    }

    DiskMonitor m_monitor{m_settings, m_defaults, m_workers, system()};
};

TEST_F(DiskMonitorTest, NothingIsKnownBeforeTheFirstReading) {
    EXPECT_EQ(m_monitor.disk(), std::nullopt);
    EXPECT_EQ(m_monitor.trashBytes(), std::nullopt);
    EXPECT_EQ(m_monitor.lastChecked(), std::nullopt);
    EXPECT_EQ(m_monitor.health(), Health::good);
    EXPECT_EQ(m_diskReadings, 0);
}

TEST_F(DiskMonitorTest, ARefreshStoresWhatItMeasured) {
    m_trash = 7;
    EXPECT_THAT(postedBy(m_monitor), IsEmpty());
    EXPECT_EQ(m_monitor.disk(), (DiskSpace{500 * gigabyte, enough}));
    EXPECT_EQ(m_monitor.trashBytes(), 7);
    EXPECT_EQ(m_monitor.lastChecked(), m_now);
}

TEST_F(DiskMonitorTest, ASignalComesOnlyWithAChange) {
    QSignalSpy disk(&m_monitor, &DiskMonitor::diskChanged);
    QSignalSpy trash(&m_monitor, &DiskMonitor::trashBytesChanged);
    QSignalSpy health(&m_monitor, &DiskMonitor::healthChanged);
    QSignalSpy checked(&m_monitor, &DiskMonitor::lastCheckedChanged);
    postedBy(m_monitor);
    postedBy(m_monitor);
    EXPECT_EQ(disk.count(), 1);
    EXPECT_EQ(trash.count(), 1);
    EXPECT_EQ(checked.count(), 1);
    EXPECT_EQ(health.count(), 0);
    m_now += 1s;
    m_available = 1;
    postedBy(m_monitor);
    EXPECT_EQ(disk.count(), 2);
    EXPECT_EQ(trash.count(), 1);
    EXPECT_EQ(checked.count(), 2);
    EXPECT_EQ(health.count(), 1);
}

TEST_F(DiskMonitorTest, HealthGoesByStrictComparisons) {
    struct Case {
        Int64 available;
        Health expected;
    };
    for (const Case& each : {Case{25 * gigabyte, Health::good},
                             {25 * gigabyte - 1, Health::low},
                             {10 * gigabyte, Health::low},
                             {10 * gigabyte - 1, Health::critical},
                             {0, Health::critical}}) {
        m_available = each.available;
        postedBy(m_monitor);
        EXPECT_EQ(m_monitor.health(), each.expected) << each.available;
    }
}

TEST_F(DiskMonitorTest, AChangedThresholdCountsAtOnce) {
    m_available = 30 * gigabyte;
    postedBy(m_monitor);
    QSignalSpy health(&m_monitor, &DiskMonitor::healthChanged);
    m_settings.setLowSpaceGB(31);
    EXPECT_EQ(m_monitor.health(), Health::low);
    EXPECT_EQ(health.count(), 1);
    m_settings.setCriticalSpaceGB(50);
    EXPECT_EQ(m_monitor.health(), Health::critical);
    EXPECT_EQ(health.count(), 2);
    m_settings.setCriticalSpaceGB(60);
    EXPECT_EQ(health.count(), 2);
}

TEST_F(DiskMonitorTest, ACriticalThresholdAboveTheLowOneLeavesNoLow) {
    m_settings.setCriticalSpaceGB(40);
    m_available = 30 * gigabyte;
    postedBy(m_monitor);
    EXPECT_EQ(m_monitor.health(), Health::critical);
    m_available = 40 * gigabyte;
    postedBy(m_monitor);
    EXPECT_EQ(m_monitor.health(), Health::good);
}

TEST_F(DiskMonitorTest, WhatIsNotifiedSaysHowMuchIsFree) {
    m_available = 24 * gigabyte;
    postedBy(m_monitor);
    EXPECT_THAT(m_posted,
                ElementsAre(Notification{"space.low", "Free space is getting low",
                                         "24 GB free. Builds and simulators need room to work."}));
    m_available = 9'500 * megabyte;
    m_trash = 6 * gigabyte;
    postedBy(m_monitor);
    EXPECT_THAT(
        m_posted,
        ElementsAre(Notification{"space.critical", "Your disk is almost full",
                                 "Only 9.5 GB left. Open Tidewright to free space safely."},
                    Notification{"trash.large", "Your Trash is holding 6 GB",
                                 "Deleted files keep using space until the Trash is emptied."}));
}

TEST_F(DiskMonitorTest, TheSameIsNotifiedAgainOnlyAfterMoreThanTwelveHours) {
    m_available = 24 * gigabyte;
    EXPECT_THAT(postedBy(m_monitor), ElementsAre("space.low"));
    EXPECT_THAT(postedBy(m_monitor), IsEmpty());
    m_now += 12h;
    EXPECT_THAT(postedBy(m_monitor), IsEmpty());
    m_now += 1s;
    EXPECT_THAT(postedBy(m_monitor), ElementsAre("space.low"));
    EXPECT_THAT(postedBy(m_monitor), IsEmpty());
}

TEST_F(DiskMonitorTest, WorseThanBeforeIsNotifiedAtOnce) {
    m_available = 24 * gigabyte;
    EXPECT_THAT(postedBy(m_monitor), ElementsAre("space.low"));
    m_available = 9 * gigabyte;
    EXPECT_THAT(postedBy(m_monitor), ElementsAre("space.critical"));
}

TEST_F(DiskMonitorTest, ATrashExactlyAtTheLimitIsLarge) {
    m_trash = 4'999'999'999;
    EXPECT_THAT(postedBy(m_monitor), IsEmpty());
    m_trash = 5'000'000'000;
    EXPECT_THAT(postedBy(m_monitor), ElementsAre("trash.large"));
}

TEST_F(DiskMonitorTest, SwitchedOffNothingIsPostedButAllIsMeasured) {
    m_settings.setNotificationsEnabled(false);
    m_available = 1;
    m_trash = 50 * gigabyte;
    EXPECT_THAT(postedBy(m_monitor), IsEmpty());
    EXPECT_FALSE(m_defaults.isSet(QStringLiteral("lastNotified.space.critical")));
    EXPECT_FALSE(m_defaults.isSet(QStringLiteral("lastNotified.trash.large")));
    EXPECT_EQ(m_monitor.health(), Health::critical);
    EXPECT_EQ(m_monitor.trashBytes(), 50 * gigabyte);
    EXPECT_EQ(m_monitor.lastChecked(), m_now);
}

TEST_F(DiskMonitorTest, ADiskThatCannotBeReadIsGoodAndSaysNothing) {
    m_available = 1;
    EXPECT_THAT(postedBy(m_monitor), ElementsAre("space.critical"));
    m_available = std::nullopt;
    m_trash = 50 * gigabyte;
    EXPECT_THAT(postedBy(m_monitor), IsEmpty());
    EXPECT_EQ(m_monitor.disk(), std::nullopt);
    EXPECT_EQ(m_monitor.health(), Health::good);
    EXPECT_EQ(m_monitor.trashBytes(), 50 * gigabyte);
}

TEST_F(DiskMonitorTest, ATrashThatCannotBeReadIsUnknown) {
    m_trash = 50 * gigabyte;
    EXPECT_THAT(postedBy(m_monitor), ElementsAre("trash.large"));
    m_trash = std::nullopt;
    m_now += 24h;
    EXPECT_THAT(postedBy(m_monitor), IsEmpty());
    EXPECT_EQ(m_monitor.trashBytes(), std::nullopt);
}

TEST_F(DiskMonitorTest, WhatTheSystemRefusesIsTriedAgain) {
    m_available = 1;
    m_accepts = false;
    EXPECT_THAT(postedBy(m_monitor), ElementsAre("space.critical"));
    EXPECT_FALSE(m_defaults.isSet(QStringLiteral("lastNotified.space.critical")));
    EXPECT_THAT(postedBy(m_monitor), ElementsAre("space.critical"));
    m_accepts = true;
    EXPECT_THAT(postedBy(m_monitor), ElementsAre("space.critical"));
    EXPECT_THAT(postedBy(m_monitor), IsEmpty());
}

TEST_F(DiskMonitorTest, TheTimeOfANotificationOutlivesTheProgram) {
    m_available = 1;
    postedBy(m_monitor);
    EXPECT_EQ(m_defaults.number(QStringLiteral("lastNotified.space.critical")), 1772323200);
    ASSERT_TRUE(m_defaults.save());
    DefaultsStore later(DefaultsStore::inFile(m_home.path("settings.conf")));
    DiskMonitor again(m_settings, later, m_workers, system());
    EXPECT_THAT(postedBy(again), IsEmpty());
}

TEST_F(DiskMonitorTest, RefreshesThatOverlapNotifyOnce) {
    m_available = 1;
    std::vector<std::function<void(bool)>> answers;
    DiskMonitorSystem slow = system();
    slow.post = [&](const Notification& notification, std::function<void(bool)> done) {
        m_posted.push_back(notification);
        answers.push_back(std::move(done));
    };
    DiskMonitor monitor(m_settings, m_defaults, m_workers, slow);
    int ended = 0;
    monitor.refresh([&] { ++ended; });
    monitor.refresh([&] { ++ended; });
    ASSERT_TRUE(becomesTrue([&] { return ended == 1; }));
    ASSERT_EQ(answers.size(), 1U);
    answers.front()(true);
    EXPECT_EQ(ended, 2);
}

TEST_F(DiskMonitorTest, ItMeasuresAtTheStartAndWhenTheSystemWakesUp) {
    m_monitor.start();
    EXPECT_EQ(m_diskReadings, 0) << "a start returns at once";
    ASSERT_TRUE(becomesTrue([&] { return m_monitor.lastChecked().has_value(); }));
    EXPECT_EQ(m_diskReadings, 1);
    ASSERT_EQ(m_wakeUps.size(), 1U);
    m_now += 1h;
    m_wakeUps.front()();
    ASSERT_TRUE(becomesTrue([&] { return m_monitor.lastChecked() == m_now; }));
    EXPECT_EQ(m_diskReadings, 2);
}

TEST_F(DiskMonitorTest, ASecondStartAddsNothing) {
    m_monitor.start();
    m_monitor.start();
    ASSERT_TRUE(becomesTrue([&] { return m_monitor.lastChecked().has_value(); }));
    EXPECT_EQ(m_diskReadings, 1);
    EXPECT_EQ(m_wakeUps.size(), 1U);
    EXPECT_EQ(m_monitor.findChildren<QTimer*>().size(), 1);
}

TEST_F(DiskMonitorTest, ItMeasuresAgainAQuarterOfAnHourAfterEachEnd) {
    m_monitor.start();
    auto* const timer = m_monitor.findChild<QTimer*>();
    EXPECT_FALSE(timer->isActive());
    ASSERT_TRUE(becomesTrue([&] { return timer->isActive(); }));
    EXPECT_EQ(timer->intervalAsDuration(), 15min);
    EXPECT_TRUE(timer->isSingleShot());
    m_now += 15min;
    timer->stop();
    QMetaObject::invokeMethod(timer, "timeout"); // as if the time were over
    ASSERT_TRUE(becomesTrue([&] { return timer->isActive(); }));
    EXPECT_EQ(m_diskReadings, 2);
    EXPECT_EQ(m_monitor.lastChecked(), m_now);
}

TEST_F(DiskMonitorTest, OneThatGoesInTheMiddleOfAMeasurementIsNotCalledBack) {
    std::mutex mutex;
    std::condition_variable changed;
    bool isMeasuring = false;
    DiskMonitorSystem slow = system();
    slow.readTrashSize = [&](const CancelToken& cancel) -> std::optional<Int64> {
        std::unique_lock lock(mutex);
        isMeasuring = true;
        changed.notify_all();
        // As a walk over a large Trash: it ends early when it is told to.
        while (!cancel.isCancelled())
            changed.wait_for(lock, 1ms);
        return 0;
    };
    auto monitor = std::make_unique<DiskMonitor>(m_settings, m_defaults, m_workers, slow);
    bool isDone = false;
    monitor->refresh([&] { isDone = true; });
    {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return isMeasuring; });
    }
    monitor.reset();
    bool isServed = false;
    m_workers.start([&] { m_workers.post([&] { isServed = true; }); });
    ASSERT_TRUE(becomesTrue([&] { return isServed; }));
    EXPECT_FALSE(isDone);
}

TEST_F(DiskMonitorTest, ANotificationAnsweredAfterItsEndIsForgotten) {
    m_available = 1;
    std::function<void(bool)> answer;
    DiskMonitorSystem slow = system();
    slow.post = [&](const Notification&, std::function<void(bool)> done) {
        answer = std::move(done);
    };
    auto monitor = std::make_unique<DiskMonitor>(m_settings, m_defaults, m_workers, slow);
    monitor->refresh();
    ASSERT_TRUE(becomesTrue([&] { return answer != nullptr; }));
    monitor.reset();
    answer(true);
    EXPECT_FALSE(m_defaults.isSet(QStringLiteral("lastNotified.space.critical")));
}

} // namespace
} // namespace tidewright
