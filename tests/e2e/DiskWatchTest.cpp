// The watch over the disk with the machine's own services of a desktop, played by stand-ins: the
// session's notifications and the system's news of waking up. Only the reading of the disk and the
// time are the test's.
#include "app/state/DiskMonitor.h"
#include "tests/app/platform/linux/PrivateBus.h"
#include "tests/support/TempHome.h"
#include "tests/support/app/LoggedMessages.h"

#include <gmock/gmock.h>

namespace tidewright::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr Date start{std::chrono::sys_days{std::chrono::year{2026} / 3 / 1}};

class DiskWatch : public testing::Test {
protected:
    DiskWatch() {
        m_notifications.answer = [](const QDBusMessage& call) {
            return call.member() == QStringLiteral("GetCapabilities")
                       ? call.createReply(QStringList{QStringLiteral("body")})
                       : call.createReply(7U);
        };
    }

    DiskMonitorSystem system() {
        DiskMonitorSystem system = DiskMonitorSystem::current();
        system.readDisk = [this]() -> Result<DiskSpace, SystemError> {
            return DiskSpace{500 * gigabyte, m_available};
        };
        system.readTrashSize = [](const CancelToken&) { return std::optional<Int64>(0); };
        system.now = [this] { return m_now; };
        return system;
    }

    /// Resumes the machine at a time that is not that of the last check, and returns when the
    /// monitor has done all that it does then.
    void wakeUp(std::chrono::milliseconds afterStart) {
        m_now = start + afterStart;
        QDBusMessage message = QDBusMessage::createSignal(
            QStringLiteral("/org/freedesktop/login1"),
            QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"));
        message << false;
        m_logind.send(message);
        EXPECT_TRUE(becomesTrue([&] { return m_monitor.lastChecked() == m_now; }));
        settle();
    }
    /// What was asked of the services has been answered, and the answers have been heard.
    static void settle() {
        for (int i = 0; i < 5; ++i) {
            exchangeWithBus(Bus::session());
            runEventLoopOnce();
        }
    }
    /// The titles that the user was shown since the last time.
    std::vector<std::string> shown() {
        std::vector<std::string> titles;
        for (const QDBusMessage& call : std::exchange(m_notifications.calls, {})) {
            if (call.member() == QStringLiteral("Notify"))
                titles.push_back(call.arguments().at(3).toString().toStdString());
        }
        return titles;
    }

    PrivateBus m_bus;
    LoggedMessages m_messages;
    StandInService m_notifications{QStringLiteral("org.freedesktop.Notifications")};
    StandInService m_logind{QStringLiteral("org.freedesktop.login1")};
    TempHome m_home;
    Workers m_workers;
    DefaultsStore m_defaults{DefaultsStore::inFile(m_home.path("settings.conf"))};
    SettingsStore m_settings{m_defaults};
    Int64 m_available = 24 * gigabyte;
    Date m_now = start;
    DiskMonitor m_monitor{m_settings, m_defaults, m_workers, system()};
};

TEST_F(DiskWatch, NotifiesOnceThenAfterTwelveHoursAndASecondAgain) {
    m_monitor.start();
    EXPECT_TRUE(becomesTrue([&] { return m_notifications.calls.size() == 2; }));
    settle();
    EXPECT_THAT(shown(), ElementsAre("Free space is getting low"));

    wakeUp(1h);
    EXPECT_THAT(shown(), IsEmpty());
    wakeUp(12h);
    EXPECT_THAT(shown(), IsEmpty());
    wakeUp(12h + 1s);
    EXPECT_THAT(shown(), ElementsAre("Free space is getting low"));

    m_available = 6 * gigabyte;
    wakeUp(13h);
    EXPECT_THAT(shown(), ElementsAre("Your disk is almost full"));
    EXPECT_EQ(m_messages.text(), "");
}

TEST_F(DiskWatch, SaysNothingWhereTheUserWantsNoNotifications) {
    m_settings.setNotificationsEnabled(false);
    m_monitor.start();
    EXPECT_TRUE(becomesTrue([&] { return m_monitor.lastChecked().has_value(); }));
    settle();
    EXPECT_THAT(shown(), IsEmpty());
}

} // namespace
} // namespace tidewright::test
