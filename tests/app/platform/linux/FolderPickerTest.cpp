#include "app/platform/FolderPicker.h"

#include "app/platform/linux/Bus.h"
#include "tests/app/platform/linux/PrivateBus.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/app/LoggedMessages.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <gmock/gmock.h>

namespace tidewright {
namespace {

using test::becomesTrue;
using test::PrivateBus;
using test::ScopedVariable;
using test::StandInService;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

using Answer = std::optional<std::vector<URL>>;

/// A portal that knows folders; a dialog of it ends when the test says so.
class Portal : public StandInService {
public:
    Portal() : StandInService(QStringLiteral("org.freedesktop.portal.Desktop")) {
        answer = [this](const QDBusMessage& call) { return usualAnswer(call); };
    }

    QDBusMessage usualAnswer(const QDBusMessage& call) {
        if (call.member() == QLatin1String("Get"))
            return call.createReply(QVariant::fromValue(QDBusVariant(version)));
        if (answersEarly)
            respond(accepted, uris);
        return call.createReply(QVariant::fromValue(QDBusObjectPath(requestPath(call))));
    }
    QString requestPath(const QDBusMessage& call) const {
        if (!ownRequestPath.isEmpty())
            return ownRequestPath;
        QString sender = call.service().mid(1);
        sender.replace(u'.', u'_');
        return QStringLiteral("/org/freedesktop/portal/desktop/request/") + sender + u'/' +
               options(call).value(QStringLiteral("handle_token")).toString();
    }
    static QVariantMap options(const QDBusMessage& call) {
        return qdbus_cast<QVariantMap>(call.arguments().at(2));
    }
    bool isAsked() const {
        return !calls.empty() && calls.back().member() == QLatin1String("OpenFile");
    }
    /// The user ends the dialog of the last call.
    void respond(uint response, const QVariant& chosen = {}) {
        QDBusMessage signal = QDBusMessage::createSignal(
            requestPath(calls.back()), QStringLiteral("org.freedesktop.portal.Request"),
            QStringLiteral("Response"));
        QVariantMap results{{QStringLiteral("writable"), true}};
        if (chosen.isValid())
            results.insert(QStringLiteral("uris"), chosen);
        signal << response << results;
        send(signal);
    }

    static constexpr uint accepted = 0;
    static constexpr uint cancelled = 1;
    static constexpr uint failed = 2;

    QVariant version = 3U;
    QString ownRequestPath;
    bool answersEarly = false; ///< before the call has come back
    QStringList uris{QStringLiteral("file:///early")};
};

class FolderPickerTest : public testing::Test {
protected:
    PrivateBus bus;
    test::LoggedMessages messages;
    std::vector<Answer> heard;

    void start(const FolderQuestion& question = {"Add Folder", URL("/home/me"), 0}) {
        heard.clear();
        pickFolders(question, [this](const Answer& answer) { heard.push_back(answer); });
        EXPECT_THAT(heard, IsEmpty()) << "told before the function has returned";
    }
    Answer end() {
        EXPECT_TRUE(becomesTrue([&] { return !heard.empty(); }));
        test::runEventLoopOnce();
        EXPECT_EQ(heard.size(), 1U);
        return heard.empty() ? Answer() : heard.front();
    }
    Answer answerTo(Portal& portal, uint response, const QVariant& chosen = {}) {
        portal.calls.clear();
        start();
        EXPECT_TRUE(becomesTrue([&] { return portal.isAsked(); }));
        portal.respond(response, chosen);
        return end();
    }
    void TearDown() override { EXPECT_EQ(messages.text(), ""); }
};

TEST_F(FolderPickerTest, PortalIsAskedForSeveralFolders) {
    Portal portal;
    start({"Add \xC3\xA9", URL("/home/\xff me"), 0x1a2b3c});
    ASSERT_TRUE(becomesTrue([&] { return portal.isAsked(); }));
    ASSERT_EQ(portal.calls.size(), 2U);
    const QDBusMessage& call = portal.calls.back();
    EXPECT_EQ(call.interface(), QStringLiteral("org.freedesktop.portal.FileChooser"));
    EXPECT_EQ(call.path(), QStringLiteral("/org/freedesktop/portal/desktop"));
    ASSERT_EQ(call.signature(), QStringLiteral("ssa{sv}"));
    EXPECT_EQ(call.arguments().at(0).toString(), QStringLiteral("x11:1a2b3c"));
    EXPECT_EQ(call.arguments().at(1).toString(), QString::fromUtf8("Add \xC3\xA9"));
    QVariantMap options = Portal::options(call);
    EXPECT_FALSE(options.take(QStringLiteral("handle_token")).toString().isEmpty());
    EXPECT_EQ(options,
              (QVariantMap{{QStringLiteral("directory"), true},
                           {QStringLiteral("multiple"), true},
                           {QStringLiteral("modal"), true},
                           {QStringLiteral("current_folder"), QByteArray("/home/\xff me\0", 11)}}));
    portal.respond(Portal::cancelled);
    end();
}

TEST_F(FolderPickerTest, WithoutAWindowNoneIsNamed) {
    Portal portal;
    start();
    ASSERT_TRUE(becomesTrue([&] { return portal.isAsked(); }));
    EXPECT_EQ(portal.calls.back().arguments().at(0).toString(), QString());
    portal.respond(Portal::cancelled);
    end();
}

TEST_F(FolderPickerTest, PickedFoldersComeInTheirOrderAndAsBytes) {
    Portal portal;
    const QStringList uris{
        QStringLiteral("file:///home/me/b"),        QStringLiteral("file:///home/me/a%20c/"),
        QStringLiteral("file:///caf%C3%A9/%FF%fe"), QStringLiteral("file://localhost/home//me/."),
        QStringLiteral("file:///100%25"),           QStringLiteral("file:///"),
        QStringLiteral("file:///%E2%82%AC/\u20AC"),
    };
    EXPECT_THAT(answerTo(portal, Portal::accepted, uris),
                Optional(ElementsAre(URL("/home/me/b"), URL("/home/me/a c"),
                                     URL("/caf\xC3\xA9/\xFF\xFE"), URL("/home/me"), URL("/100%"),
                                     URL("/"), URL("/\xE2\x82\xAC/\xE2\x82\xAC"))));
}

TEST_F(FolderPickerTest, AddressesOfNoFolderArePassedOver) {
    Portal portal;
    const QStringList uris{QStringLiteral("smb://server/share"), QStringLiteral("file://"),
                           QStringLiteral("/home/me"),           QString(),
                           QStringLiteral("file:///a%00b"),      QStringLiteral("file:///kept")};
    EXPECT_THAT(answerTo(portal, Portal::accepted, uris), Optional(ElementsAre(URL("/kept"))));
}

TEST_F(FolderPickerTest, ACancelledDialogPicksNothing) {
    Portal portal;
    EXPECT_THAT(answerTo(portal, Portal::cancelled, QStringList{QStringLiteral("file:///a")}),
                Optional(IsEmpty()));
}

TEST_F(FolderPickerTest, ResultsThatMakeNoSensePickNothing) {
    Portal portal;
    EXPECT_THAT(answerTo(portal, Portal::accepted), Optional(IsEmpty()));
    EXPECT_THAT(answerTo(portal, Portal::accepted, 7), Optional(IsEmpty()));
}

TEST_F(FolderPickerTest, AFailedDialogIsNone) {
    Portal portal;
    EXPECT_EQ(answerTo(portal, Portal::failed), std::nullopt);
}

TEST_F(FolderPickerTest, AResponseBeforeTheAnswerIsHeard) {
    Portal portal;
    portal.answersEarly = true;
    start();
    EXPECT_THAT(end(), Optional(ElementsAre(URL("/early"))));
}

TEST_F(FolderPickerTest, ARequestElsewhereIsFollowed) {
    Portal portal;
    portal.ownRequestPath = QStringLiteral("/org/freedesktop/portal/desktop/request/own/7");
    start();
    ASSERT_TRUE(becomesTrue([&] { return portal.isAsked(); }));
    test::exchangeWithBus(Bus::session()); // the answer has come
    test::runEventLoopOnce();
    test::exchangeWithBus(Bus::session()); // and the bus knows what is listened to
    portal.respond(Portal::accepted, QStringList{QStringLiteral("file:///a")});
    EXPECT_THAT(end(), Optional(ElementsAre(URL("/a"))));
}

TEST_F(FolderPickerTest, TwoQuestionsHaveAnAnswerEach) {
    Portal portal;
    const auto pathOfRequest = [&](const char* folder) {
        EXPECT_THAT(answerTo(portal, Portal::accepted,
                             QStringList{QLatin1String("file://") + QLatin1String(folder)}),
                    Optional(ElementsAre(URL(folder))));
        return portal.requestPath(portal.calls.back());
    };
    const QString first = pathOfRequest("/a");
    EXPECT_NE(pathOfRequest("/b"), first);
}

TEST_F(FolderPickerTest, APortalWithoutFoldersIsNotAsked) {
    Portal portal;
    for (const QVariant& version : {QVariant(2U), QVariant(QStringLiteral("4")), QVariant(-1)}) {
        portal.version = version;
        start();
        EXPECT_EQ(end(), std::nullopt);
        EXPECT_FALSE(portal.isAsked());
    }
}

TEST_F(FolderPickerTest, APortalThatRefusesIsNone) {
    Portal portal;
    for (const char* method : {"Get", "OpenFile"}) {
        portal.answer = [&](const QDBusMessage& call) -> std::optional<QDBusMessage> {
            if (call.member() == QLatin1String(method))
                return call.createErrorReply(QDBusError::UnknownInterface, QStringLiteral("no"));
            return portal.usualAnswer(call);
        };
        start();
        EXPECT_EQ(end(), std::nullopt) << method;
    }
}

TEST_F(FolderPickerTest, AnAnswerThatMakesNoSenseIsNone) {
    Portal portal;
    for (const char* method : {"Get", "OpenFile"}) {
        portal.answer = [&](const QDBusMessage& call) -> std::optional<QDBusMessage> {
            if (call.member() == QLatin1String(method))
                return call.createReply(QStringLiteral("7"));
            return portal.usualAnswer(call);
        };
        start();
        EXPECT_EQ(end(), std::nullopt) << method;
    }
}

TEST_F(FolderPickerTest, APortalThatVanishesTakesItsDialogWithIt) {
    std::optional<Portal> portal(std::in_place);
    start();
    ASSERT_TRUE(becomesTrue([&] { return portal->isAsked(); }));
    portal.reset();
    EXPECT_EQ(end(), std::nullopt);
}

TEST_F(FolderPickerTest, WithoutAPortalOrABusThereIsNoDialog) {
    start();
    EXPECT_EQ(end(), std::nullopt);
    bus.stop();
    start();
    EXPECT_EQ(end(), std::nullopt);
    const ScopedVariable unset("DBUS_SESSION_BUS_ADDRESS", std::nullopt);
    const ScopedVariable folder("XDG_RUNTIME_DIR", std::nullopt);
    start();
    EXPECT_EQ(end(), std::nullopt);
}

} // namespace
} // namespace tidewright
