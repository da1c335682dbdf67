#include "app/platform/Notifications.h"

#include "app/platform/linux/Bus.h"
#include "tests/app/platform/linux/PrivateBus.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/app/LoggedMessages.h"

#include <QDBusArgument>
#include <gmock/gmock.h>

#include <filesystem>

namespace tidewright {
namespace {

using test::becomesTrue;
using test::PrivateBus;
using test::ScopedVariable;
using test::StandInService;
using testing::ElementsAre;
using testing::IsEmpty;

const QString serverName = QStringLiteral("org.freedesktop.Notifications");

std::vector<std::string> methods(const StandInService& service) {
    std::vector<std::string> names;
    for (const QDBusMessage& call : service.calls) {
        EXPECT_EQ(call.interface(), serverName);
        EXPECT_EQ(call.path(), QStringLiteral("/org/freedesktop/Notifications"));
        names.push_back(call.member().toStdString());
    }
    return names;
}

struct Notify {
    explicit Notify(const QDBusMessage& call)
        : program(call.arguments().at(0).toString()),
          replaces(call.arguments().at(1).toUInt()),
          icon(call.arguments().at(2).toString()),
          title(call.arguments().at(3).toString()),
          body(call.arguments().at(4).toString()),
          actions(call.arguments().at(5).toStringList()),
          hints(qdbus_cast<QVariantMap>(call.arguments().at(6))),
          expires(call.arguments().at(7).toInt()) {
        EXPECT_EQ(call.signature(), QStringLiteral("susssasa{sv}i"));
    }

    QString program;
    uint replaces;
    QString icon;
    QString title;
    QString body;
    QStringList actions;
    QVariantMap hints;
    int expires;
};

/// A notification server, which numbers what it shows from 7 on.
class Server : public StandInService {
public:
    Server() : StandInService(serverName) {
        answer = [this](const QDBusMessage& call) { return usualAnswer(call); };
    }

    QDBusMessage usualAnswer(const QDBusMessage& call) {
        return call.member() == QStringLiteral("GetCapabilities") ? call.createReply(capabilities)
                                                                  : call.createReply(nextNumber++);
    }
    Notify lastNotify() const { return Notify(calls.back()); }

    QStringList capabilities{QStringLiteral("body")};
    uint nextNumber = 7;
};

class NotificationsTest : public testing::Test {
protected:
    NotificationsTest() { ++run(); }

    PrivateBus bus;
    test::LoggedMessages messages;
    std::vector<bool> heard;

    void start(Notification notification) {
        notification.id += " of run " + std::to_string(run()); // the program remembers earlier ones
        postNotification(notification, [this](bool isTaken) { heard.push_back(isTaken); });
    }
    /// Whether it was taken.
    bool post(const Notification& notification) {
        heard.clear();
        start(notification);
        EXPECT_THAT(heard, IsEmpty()) << "told before the function has returned";
        EXPECT_TRUE(becomesTrue([&] { return !heard.empty(); }));
        test::runEventLoopOnce();
        EXPECT_EQ(heard.size(), 1U);
        return !heard.empty() && heard.front();
    }
    void TearDown() override { EXPECT_EQ(messages.text(), ""); }

private:
    static int& run() {
        static int run = 0;
        return run;
    }
};

TEST_F(NotificationsTest, ServerIsAskedWhatItCanDoAndThenToShow) {
    Server server;
    EXPECT_TRUE(post({"asked", "Title \xC3\xA9", "Body"}));
    ASSERT_THAT(methods(server), ElementsAre("GetCapabilities", "Notify"));
    const Notify notify = server.lastNotify();
    EXPECT_EQ(notify.program, QStringLiteral("Tidewright"));
    EXPECT_EQ(notify.replaces, 0U);
    EXPECT_EQ(notify.icon, QString());
    EXPECT_EQ(notify.title, QString::fromUtf8("Title \xC3\xA9"));
    EXPECT_EQ(notify.body, QStringLiteral("Body"));
    EXPECT_THAT(notify.actions, IsEmpty());
    EXPECT_EQ(notify.hints, (QVariantMap{{QStringLiteral("desktop-entry"),
                                          QStringLiteral("com.tidewright.app")}}));
    EXPECT_EQ(notify.expires, -1);
}

TEST_F(NotificationsTest, LaterOneOfTheSameIdReplacesTheEarlierOne) {
    Server server;
    const auto replacedBy = [&](const char* id) {
        EXPECT_TRUE(post({id, "Title", "Body"}));
        return server.lastNotify().replaces;
    };
    EXPECT_EQ(replacedBy("space"), 0U); // shown as 7
    EXPECT_EQ(replacedBy("trash"), 0U); // shown as 8
    EXPECT_EQ(replacedBy("space"), 7U); // shown as 9
    EXPECT_EQ(replacedBy("trash"), 8U);
    EXPECT_EQ(replacedBy("space"), 9U);
}

TEST_F(NotificationsTest, NumbersOfAnEarlierServerAreForgotten) {
    {
        const Server server;
        EXPECT_TRUE(post({"restart", "Title", "Body"}));
    }
    Server server;
    EXPECT_TRUE(post({"restart", "Title", "Body"}));
    EXPECT_EQ(server.lastNotify().replaces, 0U);
}

TEST_F(NotificationsTest, FollowsWhatTheServerCanDo) {
    struct Case {
        QStringList capabilities;
        const char* body;
        bool hasSound;
    };
    const QString body = QStringLiteral("body");
    const QString markup = QStringLiteral("body-markup");
    const QString sound = QStringLiteral("sound");
    const char* const plain = R"(1 < 2 && "a" > 'b' &amp;)";
    const char* const escaped = R"(1 &lt; 2 &amp;&amp; "a" &gt; 'b' &amp;amp;)";
    for (const Case& each : {Case{{}, "", false}, Case{{markup}, "", false},
                             Case{{body}, plain, false}, Case{{body, markup}, escaped, false},
                             Case{{sound, body, markup}, escaped, true}, Case{{sound}, "", true}}) {
        Server server;
        server.capabilities = each.capabilities;
        EXPECT_TRUE(post({"abilities", plain, plain}));
        const Notify notify = server.lastNotify();
        EXPECT_EQ(notify.title, QString::fromUtf8(plain)); // never markup
        EXPECT_EQ(notify.body, QString::fromUtf8(each.body));
        EXPECT_EQ(notify.hints.value(QStringLiteral("sound-name")).toString(),
                  each.hasSound ? QStringLiteral("message-new-instant") : QString());
        EXPECT_EQ(notify.hints.size(), each.hasSound ? 2 : 1);
    }
}

TEST_F(NotificationsTest, IsNotTakenWhereTheServerRefuses) {
    Server server;
    for (const char* method : {"GetCapabilities", "Notify"}) {
        server.answer = [&](const QDBusMessage& call) -> std::optional<QDBusMessage> {
            if (call.member() == QLatin1String(method))
                return call.createErrorReply(QDBusError::AccessDenied, QStringLiteral("no"));
            return server.usualAnswer(call);
        };
        EXPECT_FALSE(post({"refused", "Title", "Body"})) << method;
    }
}

TEST_F(NotificationsTest, IsNotTakenWhereTheAnswerMakesNoSense) {
    Server server;
    for (const char* method : {"GetCapabilities", "Notify"}) {
        server.answer = [&](const QDBusMessage& call) -> std::optional<QDBusMessage> {
            if (call.member() == QLatin1String(method))
                return call.createReply(QStringLiteral("7"));
            return server.usualAnswer(call);
        };
        EXPECT_FALSE(post({"senseless", "Title", "Body"})) << method;
    }
}

TEST_F(NotificationsTest, IsNotTakenWhereTheServerVanishes) {
    for (const char* method : {"GetCapabilities", "Notify"}) {
        std::optional<Server> server(std::in_place);
        bool isAsked = false;
        server->answer = [&](const QDBusMessage& call) -> std::optional<QDBusMessage> {
            isAsked = call.member() == QLatin1String(method);
            return isAsked ? std::nullopt : std::optional(server->usualAnswer(call));
        };
        heard.clear();
        start({"vanished", "Title", "Body"});
        ASSERT_TRUE(becomesTrue([&] { return isAsked; }));
        server.reset();
        ASSERT_TRUE(becomesTrue([&] { return !heard.empty(); }));
        EXPECT_THAT(heard, ElementsAre(false)) << method;
    }
}

TEST_F(NotificationsTest, IsNotTakenWhereTheServerHangs) {
    Server server;
    std::vector<QDBusMessage> waiting;
    // What it can do it says the first time only.
    server.answer = [&](const QDBusMessage& call) -> std::optional<QDBusMessage> {
        if (server.calls.size() == 1)
            return server.usualAnswer(call);
        waiting.push_back(call);
        return std::nullopt;
    };
    start({"hanging", "Title", "Body"});
    start({"hanging too", "Title", "Body"});
    ASSERT_TRUE(becomesTrue([&] { return heard.size() == 2; }));
    ASSERT_EQ(waiting.size(), 2U);
    for (const QDBusMessage& call : waiting)
        server.send(server.usualAnswer(call));
    test::exchangeWithBus(Bus::session());
    test::runEventLoopOnce();
    EXPECT_THAT(heard, ElementsAre(false, false));
}

TEST_F(NotificationsTest, IsNotTakenWhereThereIsNoServer) {
    EXPECT_FALSE(post({"nobody", "Title", "Body"}));
}

TEST_F(NotificationsTest, IsNotTakenWhereThereIsNoBus) {
    bus.stop();
    EXPECT_FALSE(post({"stopped", "Title", "Body"}));
    const ScopedVariable unset("DBUS_SESSION_BUS_ADDRESS", std::nullopt);
    const ScopedVariable folder("XDG_RUNTIME_DIR", std::nullopt);
    EXPECT_FALSE(post({"none", "Title", "Body"}));
}

} // namespace
} // namespace tidewright
