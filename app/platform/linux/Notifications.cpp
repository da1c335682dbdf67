// By the freedesktop.org Desktop Notifications Specification 1.2.
#include "app/platform/Notifications.h"

#include "app/platform/linux/Bus.h"
#include "core/platform/StandardFolders.h"

#include <map>

namespace tidewright {

namespace {

constexpr std::chrono::seconds patience{5};

/// A notification on the screen, by the server's own number. Another server, after a new start,
/// gives the same numbers to other programs' notifications.
struct Shown {
    QString server;
    uint number = 0;
};

/// What this process has shown, by the notifications' ids.
std::map<std::string, Shown>& shownNotifications() {
    static std::map<std::string, Shown> shown;
    return shown;
}

uint numberToReplace(const std::string& id, const QString& server) {
    const auto shown = shownNotifications().find(id);
    const bool isKnown = shown != shownNotifications().end() && shown->second.server == server;
    return isKnown ? shown->second.number : 0; // 0 replaces nothing
}

QDBusMessage callOfServer(const QString& method) {
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.Notifications"),
                                          QStringLiteral("/org/freedesktop/Notifications"),
                                          QStringLiteral("org.freedesktop.Notifications"), method);
}

bool isAnswer(const QDBusMessage& message, QLatin1String signature) {
    return message.type() == QDBusMessage::ReplyMessage && message.signature() == signature;
}

QString escaped(QString text) {
    return text.replace(u'&', QLatin1String("&amp;"))
        .replace(u'<', QLatin1String("&lt;"))
        .replace(u'>', QLatin1String("&gt;"));
}

QString bodyFor(const QStringList& capabilities, const std::string& body) {
    if (!capabilities.contains(QLatin1String("body")))
        return {};
    const QString text = QString::fromStdString(body);
    return capabilities.contains(QLatin1String("body-markup")) ? escaped(text) : text;
}

QVariantMap hintsFor(const QStringList& capabilities) {
    QVariantMap hints{{QStringLiteral("desktop-entry"),
                       QLatin1String(ownBundleIdentifier.data(), ownBundleIdentifier.size())}};
    if (capabilities.contains(QLatin1String("sound")))
        hints.insert(QStringLiteral("sound-name"), QStringLiteral("message-new-instant"));
    return hints;
}

QDBusMessage notifyCall(const Notification& notification,
                        const QString& server,
                        const QStringList& capabilities) {
    constexpr int expiresAsUsual = -1;
    QDBusMessage call = callOfServer(QStringLiteral("Notify"));
    call << QStringLiteral("Tidewright") << numberToReplace(notification.id, server)
         << QString() // the icon is that of the desktop entry
         << QString::fromStdString(notification.title) << bodyFor(capabilities, notification.body)
         << QStringList() // no buttons
         << hintsFor(capabilities) << expiresAsUsual;
    return call;
}

} // namespace

void askToPostNotifications() {} // these desktops ask nobody

void postNotification(const Notification& notification, std::function<void(bool)> done) {
    const QDBusConnection bus = Bus::session();
    const auto afterNotify = [id = notification.id, done](const QDBusMessage& answer) {
        const bool isTaken = isAnswer(answer, QLatin1String("u"));
        if (isTaken)
            shownNotifications()[id] = {answer.service(), answer.arguments().first().toUInt()};
        done(isTaken);
    };
    const auto afterCapabilities = [bus, notification, afterNotify,
                                    done = std::move(done)](const QDBusMessage& answer) {
        if (!isAnswer(answer, QLatin1String("as")))
            return done(false);
        const QStringList capabilities = answer.arguments().first().toStringList();
        Bus::call(bus, notifyCall(notification, answer.service(), capabilities), patience,
                  afterNotify);
    };
    Bus::call(bus, callOfServer(QStringLiteral("GetCapabilities")), patience, afterCapabilities);
}

} // namespace tidewright
