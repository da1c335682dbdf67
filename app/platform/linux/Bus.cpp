#include "app/platform/linux/Bus.h"

#include <QCoreApplication>
#include <QDBusPendingCallWatcher>

#include <sys/stat.h>
#include <unistd.h>

namespace tidewright::Bus {

namespace {

bool isOwnSocket(const QByteArray& path) {
    struct stat status = {};
    return stat(path.constData(), &status) == 0 && S_ISSOCK(status.st_mode) &&
           status.st_uid == getuid();
}

/// These are the places where the D-Bus library looks; when it finds nothing there, it starts a
/// bus.
bool hasSession() {
    const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    if (!address.isEmpty())
        return !address.contains("autolaunch:");
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    return !folder.isEmpty() && isOwnSocket(folder + "/bus");
}

// Not by its address: Qt gives up on a bus that is silent in a way at which the library ends the
// program.
QDBusConnection connectionTo(QDBusConnection::BusType type, const QString& name) {
    QDBusConnection known(name);
    if (known.isConnected())
        return known;
    QDBusConnection::disconnectFromBus(name); // forgets one that has broken
    return QDBusConnection::connectToBus(type, name);
}

} // namespace

QDBusConnection session() {
    if (!hasSession())
        return QDBusConnection(QString());
    return connectionTo(QDBusConnection::SessionBus, QStringLiteral("Tidewright's session"));
}

QDBusConnection system() {
    return connectionTo(QDBusConnection::SystemBus, QStringLiteral("Tidewright's system"));
}

void call(const QDBusConnection& bus,
          const QDBusMessage& message,
          std::chrono::milliseconds patience,
          std::function<void(const QDBusMessage&)> done) {
    // A call on no connection at all would never be answered.
    const QDBusPendingCall call =
        bus.isConnected()
            ? bus.asyncCall(message, static_cast<int>(patience.count()))
            : QDBusPendingCall::fromError(QDBusError(QDBusError::Disconnected, QString()));
    auto* const watcher = new QDBusPendingCallWatcher(call, QCoreApplication::instance());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [watcher, done = std::move(done)] {
                         watcher->deleteLater();
                         done(watcher->reply());
                     });
}

} // namespace tidewright::Bus
