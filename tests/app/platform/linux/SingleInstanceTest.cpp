#include "app/platform/SingleInstance.h"

#include "tests/app/platform/linux/PrivateBus.h"
#include "tests/support/app/LoggedMessages.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusPendingCall>
#include <QThread>
#include <gmock/gmock.h>

#include <memory>

namespace tidewright {
namespace {

using test::becomesTrue;
using test::PrivateBus;
using test::ScopedVariable;
using test::StandInService;
using testing::SizeIs;
using testing::StartsWith;

/// Another program that has the name. On a thread of its own: who waits for its answer doesn't run
/// an event loop meanwhile.
class First {
public:
    using Answer = std::function<QDBusMessage(const QDBusMessage&)>;

    explicit First(
        const QString& name,
        const Answer& answer = [](const QDBusMessage& call) { return call.createReply(); }) {
        m_thread.start();
        QObject inThread;
        inThread.moveToThread(&m_thread);
        QMetaObject::invokeMethod(
            &inThread,
            [&] {
                m_service = std::make_unique<StandInService>(name);
                m_service->answer = answer;
            },
            Qt::BlockingQueuedConnection);
        QMetaObject::invokeMethod(
            &inThread, [&] { inThread.moveToThread(QCoreApplication::instance()->thread()); },
            Qt::BlockingQueuedConnection);
    }
    ~First() {
        QObject::connect(
            &m_thread, &QThread::finished, m_service.get(), [this] { m_service.reset(); },
            Qt::DirectConnection);
        m_thread.quit();
        m_thread.wait();
    }

    const std::vector<QDBusMessage>& calls() const { return m_service->calls; }

private:
    QThread m_thread;
    std::unique_ptr<StandInService> m_service;
};

class SingleInstanceTest : public testing::Test {
protected:
    PrivateBus m_bus;
    test::LoggedMessages m_messages;
    ScopedVariable m_home{"HOME", "/home/first"};
    QObject m_context;
    int m_starts = 0;

    bool become() {
        return becomeOnlyInstance(&m_context, [this] { ++m_starts; });
    }
    /// The names that the program has on the bus, besides those that the bus gives.
    static QStringList names() {
        const QDBusMessage answer = Bus::session().call(QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("ListNames")));
        return answer.arguments().at(0).toStringList().filter(QStringLiteral("com.tidewright"));
    }
    /// What its name is here.
    QString ownName() {
        EXPECT_TRUE(become());
        const QStringList found = names();
        EXPECT_THAT(found, SizeIs(1));
        Bus::session().unregisterService(found.at(0));
        return found.at(0);
    }
};

TEST_F(SingleInstanceTest, TheFirstIsTheOneAndHearsOfTheNextStart) {
    ASSERT_TRUE(become());
    ASSERT_THAT(names(), SizeIs(1));
    EXPECT_THAT(names().at(0).toStdString(), StartsWith("com.tidewright.app.h"));

    const StandInService other(QStringLiteral("org.example.launcher"));
    QDBusMessage call = QDBusMessage::createMethodCall(
        names().at(0), QStringLiteral("/com/tidewright/app"),
        QStringLiteral("org.freedesktop.Application"), QStringLiteral("Activate"));
    call << QVariantMap{{QStringLiteral("activation-token"), QStringLiteral("token")}};
    ScopedVariable token("XDG_ACTIVATION_TOKEN", "");
    QDBusConnection::connectToBus(QString::fromStdString(PrivateBus::address()),
                                  QStringLiteral("launcher"))
        .asyncCall(call);
    EXPECT_TRUE(becomesTrue([this] { return m_starts == 1; }));
    EXPECT_EQ(qgetenv("XDG_ACTIVATION_TOKEN"), "token");
    QDBusConnection::disconnectFromBus(QStringLiteral("launcher"));
}

TEST_F(SingleInstanceTest, TheNextAsksTheFirstToComeToTheFront) {
    const QString name = ownName();
    const ScopedVariable token("DESKTOP_STARTUP_ID", "wish");
    const First first(name);
    EXPECT_FALSE(become());
    ASSERT_THAT(first.calls(), SizeIs(1));
    const QDBusMessage& call = first.calls().front();
    EXPECT_EQ(call.interface(), QLatin1String("org.freedesktop.Application"));
    EXPECT_EQ(call.member(), QLatin1String("Activate"));
    EXPECT_EQ(call.path(), QLatin1String("/com/tidewright/app"));
    EXPECT_EQ(qdbus_cast<QVariantMap>(call.arguments().at(0)),
              (QVariantMap{{QStringLiteral("desktop-startup-id"), QStringLiteral("wish")}}));
    EXPECT_EQ(m_starts, 0);
}

TEST_F(SingleInstanceTest, OneThatRefusesIsNoInstance) {
    const QString name = ownName();
    const First first(name, [](const QDBusMessage& call) {
        return call.createErrorReply(QDBusError::UnknownMethod, QStringLiteral("No such thing"));
    });
    EXPECT_TRUE(become());
}

TEST_F(SingleInstanceTest, AnotherHomeHasAnInstanceOfItsOwn) {
    const QString name = ownName();
    const ScopedVariable home("HOME", "/home/second");
    EXPECT_NE(ownName(), name);
}

TEST_F(SingleInstanceTest, WithoutABusEachIsTheOnlyOne) {
    m_bus.stop();
    EXPECT_TRUE(become());
    EXPECT_EQ(m_messages.text(), "");
}

} // namespace
} // namespace tidewright
