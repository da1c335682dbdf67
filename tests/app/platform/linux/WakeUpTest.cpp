#include "app/platform/WakeUp.h"

#include "app/platform/linux/Bus.h"
#include "tests/app/platform/linux/PrivateBus.h"
#include "tests/support/app/LoggedMessages.h"

#include <gtest/gtest.h>

namespace tidewright {
namespace {

using test::PrivateBus;
using test::StandInService;

const QString serviceName = QStringLiteral("org.freedesktop.login1");

class WakeUpTest : public testing::Test {
protected:
    PrivateBus bus;
    int wakeUps = 0;

    /// Returns when all who listen have heard it.
    static void signal(StandInService& service,
                       const QVariant& value,
                       const QString& name = QStringLiteral("PrepareForSleep")) {
        QDBusMessage message =
            QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/login1"),
                                       QStringLiteral("org.freedesktop.login1.Manager"), name);
        message << value;
        service.send(message);
        test::exchangeWithBus(Bus::system());
        test::runEventLoopOnce();
    }
    void listen(QObject* context) {
        onWakeUp(context, [this] { ++wakeUps; });
    }
};

TEST_F(WakeUpTest, IsHeardOnceEachTimeTheSystemResumes) {
    StandInService service(serviceName);
    QObject context;
    listen(&context);
    for (int i = 1; i <= 3; ++i) {
        signal(service, true); // it goes to sleep
        EXPECT_EQ(wakeUps, i - 1);
        signal(service, false);
        EXPECT_EQ(wakeUps, i);
    }
    signal(service, false, QStringLiteral("PrepareForShutdown"));
    signal(service, QStringLiteral("false"));
    EXPECT_EQ(wakeUps, 3);
}

TEST_F(WakeUpTest, IsHeardNoLongerThanTheContextExists) {
    StandInService service(serviceName);
    QObject other;
    int othersWakeUps = 0;
    onWakeUp(&other, [&] { ++othersWakeUps; });
    auto context = std::make_unique<QObject>();
    listen(context.get());
    signal(service, false);
    context.reset();
    signal(service, false);
    EXPECT_EQ(wakeUps, 1);
    EXPECT_EQ(othersWakeUps, 2);
}

TEST_F(WakeUpTest, IsHeardOfAServiceThatComesLater) {
    QObject context;
    listen(&context);
    StandInService service(serviceName);
    signal(service, false);
    EXPECT_EQ(wakeUps, 1);
}

TEST_F(WakeUpTest, IsHeardOfNobodyElse) {
    const StandInService service(serviceName);
    StandInService other(QStringLiteral("org.example.Other"));
    QObject context;
    listen(&context);
    signal(other, false);
    EXPECT_EQ(wakeUps, 0);
}

TEST_F(WakeUpTest, IsNotHeardWithoutABus) {
    const test::LoggedMessages messages;
    bus.stop();
    QObject context;
    listen(&context);
    test::runEventLoopOnce();
    EXPECT_EQ(wakeUps, 0);
    EXPECT_EQ(messages.text(), "");
}

} // namespace
} // namespace tidewright
