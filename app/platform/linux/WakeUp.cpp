// By the interface org.freedesktop.login1 of systemd-logind and those that behave like it.
#include "app/platform/WakeUp.h"

#include "app/platform/linux/Bus.h"
#include "app/platform/linux/WakeUpListener.h"

namespace tidewright {

void onWakeUp(QObject* context, std::function<void()> function) {
    QDBusConnection bus = Bus::system();
    if (!bus.isConnected())
        return;
    bus.connect(QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
                QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"),
                new WakeUpListener(context, std::move(function)), SLOT(prepareForSleep(bool)));
}

} // namespace tidewright
