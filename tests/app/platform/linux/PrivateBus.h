// A message bus of a test's own, and stand-ins for the services on it.
#pragma once

#include "app/platform/linux/Bus.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TempHome.h"
#include "tests/support/app/EventLoop.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QProcess>
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <sys/prctl.h>

#include <array>
#include <csignal>
#include <functional>
#include <optional>
#include <vector>

namespace tidewright::test {

/// While it lives, it is the bus of the session and of the system; one at a time. It ends with its
/// owner, or with the test program if that is killed.
class PrivateBus {
public:
    PrivateBus() {
        const URL settings = folder().file(
            "bus.conf", fmt::format("<busconfig><type>session</type><listen>{}</listen>"
                                    "<auth>EXTERNAL</auth><policy context=\"default\">"
                                    "<allow send_destination=\"*\"/><allow receive_sender=\"*\"/>"
                                    "<allow own=\"*\"/></policy></busconfig>",
                                    address()));
        m_daemon.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                        QStringLiteral("--config-file"), QString::fromStdString(settings.path())});
        // It prints the address once it listens there.
        EXPECT_TRUE(m_daemon.waitForReadyRead()) << m_daemon.readAllStandardError().toStdString();
    }
    ~PrivateBus() { stop(); }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    /// Holds the socket, under the name `bus`. The same for the whole program: the D-Bus library
    /// reads the environment only once.
    static const TempHome& folder() {
        static const TempHome folder;
        return folder;
    }
    static std::string address() { return "unix:path=" + folder().path("bus").path(); }

    /// Returns when the program knows.
    void stop() {
        const std::array connections{Bus::session(), Bus::system()};
        m_daemon.kill();
        m_daemon.waitForFinished();
        for (const QDBusConnection& each : connections)
            EXPECT_TRUE(becomesTrue([&] { return !each.isConnected(); }));
    }

private:
    ScopedVariable m_session{"DBUS_SESSION_BUS_ADDRESS", address()};
    ScopedVariable m_system{"DBUS_SYSTEM_BUS_ADDRESS", address()};
    QProcess m_daemon;
};

/// Waits for an answer of the bus: what was sent before over this connection, or to it, has then
/// come through.
inline void exchangeWithBus(const QDBusConnection& connection) {
    const QDBusMessage answer = connection.call(QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId")));
    EXPECT_EQ(answer.type(), QDBusMessage::ReplyMessage) << answer.errorMessage().toStdString();
}

/// Has a name on the bus, writes down the calls that it gets, and answers as it was told. It lives
/// in the event loop of the test: whoever waits for it there without running the loop gets nothing.
class StandInService : public QDBusVirtualObject {
public:
    explicit StandInService(const QString& name)
        : m_connection(QDBusConnection::connectToBus(QString::fromStdString(PrivateBus::address()),
                                                     nextConnectionName())) {
        EXPECT_TRUE(m_connection.registerVirtualObject(QStringLiteral("/"), this,
                                                       QDBusConnection::SubPath));
        EXPECT_TRUE(m_connection.registerService(name));
    }
    ~StandInService() override { QDBusConnection::disconnectFromBus(m_connection.name()); }

    /// Nothing for a call that stays without an answer.
    std::function<std::optional<QDBusMessage>(const QDBusMessage&)> answer =
        [](const QDBusMessage& call) { return call.createReply(); };
    std::vector<QDBusMessage> calls;

    /// Returns when the bus has it.
    void send(const QDBusMessage& message) {
        EXPECT_TRUE(m_connection.send(message));
        exchangeWithBus(m_connection);
    }

    bool handleMessage(const QDBusMessage& call, const QDBusConnection& connection) override {
        calls.push_back(call);
        call.setDelayedReply(true);
        if (const auto reply = answer(call))
            connection.send(*reply);
        return true;
    }
    QString introspect(const QString&) const override { return {}; }

private:
    static QString nextConnectionName() {
        static int last = 0;
        return QStringLiteral("stand-in %1").arg(++last);
    }

    QDBusConnection m_connection;
};

} // namespace tidewright::test
