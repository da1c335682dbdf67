// By a name on the bus of the session and the interface org.freedesktop.Application of the
// freedesktop.org Desktop Entry Specification 1.5.
#include "app/platform/SingleInstance.h"

#include "app/platform/linux/Bus.h"
#include "app/platform/linux/SingleInstanceListener.h"
#include "core/platform/StandardFolders.h"

#include <QCryptographicHash>
#include <fmt/format.h>

namespace tidewright {

namespace {

constexpr int patience = 3'000; // ms

constexpr QLatin1String interface("org.freedesktop.Application");
constexpr QLatin1String object("/com/tidewright/app");

// Both how a launcher hands over the user's wish that a window come to the front, and how Qt reads
// it: on Wayland and on X.
struct Token {
    QLatin1String key;
    const char* variable = nullptr;
};
constexpr Token tokens[] = {{QLatin1String("activation-token"), "XDG_ACTIVATION_TOKEN"},
                            {QLatin1String("desktop-startup-id"), "DESKTOP_STARTUP_ID"}};

/// A program for another home, such as one with samples, is none of this one's business.
QString serviceName() {
    const QByteArray home = QByteArray::fromStdString(homeDirectory().path());
    const QByteArray hash = QCryptographicHash::hash(home, QCryptographicHash::Sha256).toHex();
    return QString::fromStdString(
        fmt::format("{}.h{}", ownBundleIdentifier, hash.left(16).toStdString()));
}

QVariantMap platformData() {
    QVariantMap data;
    for (const Token& token : tokens) {
        if (const QByteArray value = qgetenv(token.variable); !value.isEmpty())
            data[token.key] = QString::fromLocal8Bit(value);
    }
    return data;
}

void takeOver(const QVariantMap& platformData) {
    for (const Token& token : tokens) {
        if (const QByteArray value = platformData[token.key].toString().toUtf8(); !value.isEmpty())
            qputenv(token.variable, value);
    }
}

/// False where it doesn't answer, and so can't be the one that the user is to work with.
bool bringToFront(const QDBusConnection& bus, const QString& service) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, object, interface, QStringLiteral("Activate"));
    call << platformData();
    return bus.call(call, QDBus::Block, patience).type() == QDBusMessage::ReplyMessage;
}

} // namespace

bool becomeOnlyInstance(QObject* context, std::function<void()> onNextStart) {
    QDBusConnection bus = Bus::session();
    if (!bus.isConnected())
        return true;
    auto* const listener = new SingleInstanceListener(
        context, [function = std::move(onNextStart)](const QVariantMap& platformData) {
            takeOver(platformData);
            function();
        });
    // There before the name, so that no call finds the name alone.
    bus.registerObject(object, listener, QDBusConnection::ExportAllSlots);
    const QString service = serviceName();
    return bus.registerService(service) || !bringToFront(bus, service);
}

} // namespace tidewright
