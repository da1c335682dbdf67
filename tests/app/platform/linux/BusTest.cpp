#include "app/platform/linux/Bus.h"

#include "tests/app/platform/linux/PrivateBus.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/app/LoggedMessages.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tidewright {
namespace {

using namespace std::chrono_literals;
using test::becomesTrue;
using test::PrivateBus;
using test::ScopedVariable;
using test::StandInService;
using testing::ElementsAre;
using testing::IsEmpty;

const QString exampleName = QStringLiteral("org.example.Service");

QDBusMessage exampleCall() {
    return QDBusMessage::createMethodCall(exampleName, QStringLiteral("/org/example"), exampleName,
                                          QStringLiteral("Do"));
}

/// The kinds of the answers that `done` has heard.
using Heard = std::vector<QDBusMessage::MessageType>;

void callExample(const QDBusConnection& bus, std::chrono::milliseconds patience, Heard& heard) {
    Bus::call(bus, exampleCall(), patience,
              [&](const QDBusMessage& answer) { heard.push_back(answer.type()); });
}

TEST(Bus, ReachesTheServicesOfSessionAndSystem) {
    const PrivateBus bus;
    const StandInService service(exampleName);
    for (const QDBusConnection& each : {Bus::session(), Bus::system()}) {
        Heard heard;
        callExample(each, 60s, heard);
        ASSERT_TRUE(becomesTrue([&] { return !heard.empty(); }));
        EXPECT_THAT(heard, ElementsAre(QDBusMessage::ReplyMessage));
    }
    EXPECT_EQ(service.calls.size(), 2U);
}

TEST(Bus, OfTheSessionIsElseInTheFolderOfRunningPrograms) {
    const PrivateBus bus;
    const ScopedVariable folder("XDG_RUNTIME_DIR", PrivateBus::folder().url().path());
    for (const auto& address : {std::optional<std::string>(), std::optional<std::string>("")}) {
        const ScopedVariable session("DBUS_SESSION_BUS_ADDRESS", address);
        EXPECT_TRUE(Bus::session().isConnected());
    }
}

TEST(Bus, OneThatStartedAnewIsFoundAgain) {
    for (int i = 0; i < 2; ++i) {
        const PrivateBus bus;
        EXPECT_TRUE(Bus::session().isConnected());
        EXPECT_TRUE(Bus::system().isConnected());
    }
}

TEST(Bus, IsNeverStarted) {
    test::TempHome home;
    home.tool("bin/dbus-launch", "echo started >> " + home.path("started").path());
    const ScopedVariable path("PATH", home.path("bin").path());
    const ScopedVariable display("DISPLAY", ":77");
    home.file("bus"); // no socket
    const ScopedVariable folder("XDG_RUNTIME_DIR", home.url().path());
    for (const auto& address : {std::optional<std::string>(), std::optional<std::string>(""),
                                std::optional<std::string>("autolaunch:"),
                                std::optional<std::string>("unix:path=/nowhere;autolaunch:")}) {
        const ScopedVariable session("DBUS_SESSION_BUS_ADDRESS", address);
        EXPECT_FALSE(Bus::session().isConnected());
        Heard heard;
        callExample(Bus::session(), 60s, heard);
        ASSERT_TRUE(becomesTrue([&] { return !heard.empty(); }));
    }
    EXPECT_FALSE(std::filesystem::exists(home.path("started").path()));
}

TEST(Bus, EveryCallIsAnsweredOnceAndLater) {
    const test::LoggedMessages messages;
    PrivateBus bus;
    Heard refused;
    Heard unserved;
    Heard unanswered;
    Heard cutOff;
    Heard disconnected;
    auto service = std::make_unique<StandInService>(exampleName);
    service->answer = [](const QDBusMessage& call) -> std::optional<QDBusMessage> {
        return call.createErrorReply(QDBusError::Failed, QStringLiteral("not today"));
    };
    callExample(Bus::session(), 60s, refused);
    EXPECT_THAT(refused, IsEmpty());
    ASSERT_TRUE(becomesTrue([&] { return !refused.empty(); }));

    std::vector<QDBusMessage> waiting;
    service->answer = [&](const QDBusMessage& call) {
        waiting.push_back(call);
        return std::optional<QDBusMessage>();
    };
    callExample(Bus::session(), 50ms, unanswered);
    ASSERT_TRUE(becomesTrue([&] { return !unanswered.empty(); }));
    ASSERT_EQ(waiting.size(), 1U);
    service->send(waiting.front().createReply()); // too late

    callExample(Bus::session(), 60s, cutOff);
    ASSERT_TRUE(becomesTrue([&] { return waiting.size() == 2; }));
    service.reset();
    ASSERT_TRUE(becomesTrue([&] { return !cutOff.empty(); }));

    callExample(Bus::session(), 60s, unserved);
    ASSERT_TRUE(becomesTrue([&] { return !unserved.empty(); }));

    const QDBusConnection connection = Bus::session();
    bus.stop();
    ASSERT_TRUE(becomesTrue([&] { return !connection.isConnected(); }));
    callExample(connection, 60s, disconnected);
    EXPECT_THAT(disconnected, IsEmpty());
    ASSERT_TRUE(becomesTrue([&] { return !disconnected.empty(); }));

    for (const Heard* heard : {&refused, &unanswered, &cutOff, &unserved, &disconnected})
        EXPECT_THAT(*heard, ElementsAre(QDBusMessage::ErrorMessage));
    EXPECT_EQ(messages.text(), "");
}

TEST(Bus, ThatEndsAnswersWhatIsWaiting) {
    PrivateBus bus;
    StandInService service(exampleName);
    service.answer = [](const QDBusMessage&) { return std::optional<QDBusMessage>(); };
    Heard heard;
    callExample(Bus::session(), 60s, heard);
    ASSERT_TRUE(becomesTrue([&] { return !service.calls.empty(); }));
    bus.stop();
    ASSERT_TRUE(becomesTrue([&] { return !heard.empty(); }));
    EXPECT_THAT(heard, ElementsAre(QDBusMessage::ErrorMessage));
}

} // namespace
} // namespace tidewright
