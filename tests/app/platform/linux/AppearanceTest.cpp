#include "app/platform/Appearance.h"

#include "app/platform/linux/Bus.h"
#include "tests/app/platform/linux/PrivateBus.h"
#include "tests/support/app/LoggedMessages.h"

#include <QDBusArgument>
#include <gmock/gmock.h>

#include <map>
#include <memory>
#include <vector>

namespace tidewright {
namespace {

using test::becomesTrue;
using test::PrivateBus;
using test::StandInService;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

const QString everyDesktop = QStringLiteral("org.freedesktop.appearance");
const QString gnome = QStringLiteral("org.gnome.desktop.interface");
const QString scheme = QStringLiteral("color-scheme");
const QString accent = QStringLiteral("accent-color");
const QString animations = QStringLiteral("enable-animations");

QVariant color(double red, double green, double blue) {
    QDBusArgument argument;
    argument.beginStructure();
    argument << red << green << blue;
    argument.endStructure();
    return QVariant::fromValue(argument);
}

/// The desktop's settings. What it does not hold is an error to ask for.
class Portal : public StandInService {
public:
    Portal() : StandInService(QStringLiteral("org.freedesktop.portal.Desktop")) {
        answer = [this](const QDBusMessage& call) { return usualAnswer(call); };
    }

    QDBusMessage usualAnswer(const QDBusMessage& call) const {
        const auto found =
            settings.find({call.arguments().at(0).toString(), call.arguments().at(1).toString()});
        if (found == settings.end())
            return call.createErrorReply(QStringLiteral("org.freedesktop.portal.Error.NotFound"),
                                         QString());
        // A value in a value, as real ones answer.
        return call.createReply(
            QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(found->second)))));
    }

    void change(const QString& group, const QString& key, const QVariant& value) {
        QDBusMessage signal = QDBusMessage::createSignal(
            QStringLiteral("/org/freedesktop/portal/desktop"),
            QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        send(signal);
    }

    std::map<std::pair<QString, QString>, QVariant> settings;
};

class AppearanceTest : public testing::Test {
protected:
    PrivateBus bus;
    test::LoggedMessages messages;
    std::unique_ptr<QObject> context = std::make_unique<QObject>();
    std::vector<Appearance> heard;

    void follow() {
        followAppearance(context.get(),
                         [this](const Appearance& appearance) { heard.push_back(appearance); });
        EXPECT_THAT(heard, IsEmpty()) << "told before the function has returned";
    }
    /// Returns when the portal's answers have come.
    void followUntilAnswered(Portal& portal) {
        follow();
        EXPECT_TRUE(becomesTrue([&] { return portal.calls.size() == 3; }));
        settle(portal);
    }
    /// Lets what the portal has sent come through.
    static void settle(Portal& portal) {
        portal.change(gnome, QStringLiteral("of no interest"), 0);
        settle();
    }
    static void settle() {
        test::exchangeWithBus(Bus::session());
        test::runEventLoopOnce();
    }
    void TearDown() override { EXPECT_EQ(messages.text(), ""); }
};

TEST_F(AppearanceTest, WhatThePortalHoldsIsTold) {
    Portal portal;
    portal.settings = {{{everyDesktop, scheme}, 1U},
                       {{everyDesktop, accent}, color(0.25, 0.5, 1)},
                       {{gnome, animations}, false}};
    followUntilAnswered(portal);
    ASSERT_FALSE(heard.empty());
    EXPECT_EQ(heard.back(), (Appearance{true, AccentColor{0.25, 0.5, 1}, true}));
    std::vector<std::string> asked;
    for (const QDBusMessage& call : portal.calls) {
        EXPECT_EQ(call.path(), QStringLiteral("/org/freedesktop/portal/desktop"));
        EXPECT_EQ(call.interface(), QStringLiteral("org.freedesktop.portal.Settings"));
        EXPECT_EQ(call.member(), QStringLiteral("Read"));
        EXPECT_EQ(call.signature(), QStringLiteral("ss"));
        asked.push_back(call.arguments().at(0).toString().toStdString() + " " +
                        call.arguments().at(1).toString().toStdString());
    }
    EXPECT_THAT(asked, UnorderedElementsAre("org.freedesktop.appearance color-scheme",
                                            "org.freedesktop.appearance accent-color",
                                            "org.gnome.desktop.interface enable-animations"));
}

TEST_F(AppearanceTest, ChangesAreTold) {
    Portal portal;
    portal.settings = {{{everyDesktop, scheme}, 1U}};
    followUntilAnswered(portal);
    EXPECT_THAT(heard, ElementsAre(Appearance{true, {}, {}}));

    portal.change(everyDesktop, scheme, 2U);
    EXPECT_TRUE(becomesTrue([&] { return heard.size() == 2; }));
    EXPECT_EQ(heard.back(), (Appearance{false, {}, {}}));
    portal.change(gnome, animations, true);
    EXPECT_TRUE(becomesTrue([&] { return heard.size() == 3; }));
    EXPECT_EQ(heard.back(), (Appearance{false, {}, false}));
    portal.change(everyDesktop, accent, color(1, 0, 0));
    EXPECT_TRUE(becomesTrue([&] { return heard.size() == 4; }));
    EXPECT_EQ(heard.back(), (Appearance{false, AccentColor{1, 0, 0}, false}));
    portal.change(everyDesktop, scheme, 0U);
    EXPECT_TRUE(becomesTrue([&] { return heard.size() == 5; }));
    EXPECT_EQ(heard.back(), (Appearance{{}, AccentColor{1, 0, 0}, false})) << "no preference";
}

TEST_F(AppearanceTest, WhatSaysNothingNewIsNotTold) {
    Portal portal;
    portal.settings = {{{everyDesktop, scheme}, 2U}};
    followUntilAnswered(portal);
    ASSERT_EQ(heard.size(), 1U);
    portal.change(everyDesktop, scheme, 2U);
    portal.change(everyDesktop, QStringLiteral("contrast"), 1U);
    portal.change(gnome, scheme, QStringLiteral("prefer-dark"));
    portal.change(gnome, animations, true); // the sign that those before have come
    EXPECT_TRUE(becomesTrue([&] { return heard.size() >= 2; }));
    EXPECT_THAT(heard, ElementsAre(Appearance{false, {}, {}}, Appearance{false, {}, false}));
}

TEST_F(AppearanceTest, ValuesThatMakeNoSenseAreUntold) {
    const std::vector<std::pair<QString, QVariant>> senseless{
        {scheme, 3U},
        {scheme, QStringLiteral("dark")},
        {scheme, color(1, 0, 0)},
        {accent, color(-1, -1, -1)},
        {accent, color(0, 0, 1.5)},
        {accent, QStringLiteral("red")},
        {accent, QStringList{QStringLiteral("red")}},
        {accent, 4U},
    };
    Portal portal;
    for (const auto& [key, value] : senseless) {
        portal.calls.clear();
        context = std::make_unique<QObject>();
        heard.clear();
        portal.settings = {{{everyDesktop, key}, value}, {{gnome, animations}, 1}};
        followUntilAnswered(portal);
        EXPECT_THAT(heard, IsEmpty()) << key.toStdString();
    }
}

TEST_F(AppearanceTest, NothingIsToldWithoutPortal) {
    follow();
    settle();
    settle();
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(AppearanceTest, NothingIsToldWithoutBus) {
    bus.stop();
    follow();
    test::runEventLoopOnce();
    EXPECT_THAT(heard, IsEmpty());
}

TEST_F(AppearanceTest, NothingIsToldAfterTheContextIsGone) {
    Portal portal;
    portal.settings = {{{everyDesktop, scheme}, 1U}};
    follow();
    context.reset();
    EXPECT_TRUE(becomesTrue([&] { return portal.calls.size() == 3; }));
    portal.change(everyDesktop, scheme, 2U);
    settle(portal);
    EXPECT_THAT(heard, IsEmpty());
}

} // namespace
} // namespace tidewright
