// There are two kinds of places: hosts of the StatusNotifierItem specification, which make
// themselves known on the session's bus, and trays of the older System Tray Protocol 0.3, which own
// a selection of the X server.
//
// QSystemTrayIcon settles for one of the kinds when it is first asked anything, and at a login the
// program may be there before the desktop's panel. So it isn't asked here.
#include "app/tray/TrayHost.h"

#include "app/platform/linux/Bus.h"

#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QPointer>
#include <QTimer>
#include <fmt/format.h>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace tidewright {

namespace {

constexpr std::chrono::seconds patience{5};

// The older trays aren't heard of: they are looked for while a desktop may be starting.
constexpr std::chrono::seconds lookInterval{2};
constexpr int lookCount = 30;

constexpr QLatin1String service("org.kde.StatusNotifierWatcher");
constexpr QLatin1String object("/StatusNotifierWatcher");
constexpr QLatin1String hostProperty("IsStatusNotifierHostRegistered");

template <class Type>
using Freed = std::unique_ptr<Type, decltype(&std::free)>;

int screenNumber() {
    char* host = nullptr;
    int display = 0;
    int screen = 0;
    if (xcb_parse_display(nullptr, &host, &display, &screen) == 0)
        return 0;
    std::free(host);
    return screen;
}

bool hasTrayOfX() {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr)
        return false;
    xcb_connection_t* const connection = x11->connection();
    const std::string name = fmt::format("_NET_SYSTEM_TRAY_S{}", screenNumber());
    const Freed<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(
            connection,
            xcb_intern_atom(connection, 0, static_cast<uint16_t>(name.size()), name.c_str()),
            nullptr),
        std::free);
    if (!atom)
        return false;
    const Freed<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, atom->atom),
                                      nullptr),
        std::free);
    return owner && owner->owner != XCB_WINDOW_NONE;
}

bool saysYes(const QDBusMessage& answer) {
    return answer.type() == QDBusMessage::ReplyMessage &&
           answer.signature() == QLatin1String("v") &&
           answer.arguments().first().value<QDBusVariant>().variant().toBool();
}

void lookForSomeTime(TrayHost* host) {
    auto* const timer = new QTimer(host);
    QObject::connect(timer, &QTimer::timeout, host, [host, timer, left = lookCount]() mutable {
        if (host->isAvailable() || --left == 0)
            timer->deleteLater();
        else
            host->look();
    });
    timer->start(lookInterval);
}

} // namespace

TrayHost::TrayHost(QObject* parent) : QObject(parent) {
    QDBusConnection bus = Bus::session();
    if (bus.isConnected()) {
        auto* const watcher =
            new QDBusServiceWatcher(service, bus, QDBusServiceWatcher::WatchForOwnerChange, this);
        connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this, &TrayHost::look);
        for (const char* const signal :
             {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
            bus.connect(service, object, service, QString::fromLatin1(signal), this, SLOT(look()));
    }
    look();
    lookForSomeTime(this);
}

void TrayHost::look() {
    const QDBusConnection bus = Bus::session();
    QDBusMessage call = QDBusMessage::createMethodCall(
        service, object, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << QString(service) << QString(hostProperty);
    call.setAutoStartService(false);
    Bus::call(bus, call, patience, [self = QPointer(this)](const QDBusMessage& answer) {
        if (self)
            self->setAvailable(saysYes(answer) || hasTrayOfX());
    });
}

} // namespace tidewright
