#include "app/tray/Residency.h"

#include "core/platform/SystemLog.h"

#include <QGuiApplication>
#include <QWindow>

#include <algorithm>

namespace tidewright {

namespace {

/// A desktop that is starting has its panel by then.
constexpr std::chrono::seconds patience{20};

bool hasWindow() {
    const QWindowList windows = QGuiApplication::topLevelWindows();
    return std::any_of(windows.begin(), windows.end(),
                       [](const QWindow* window) { return window->isVisible(); });
}

} // namespace

Residency::Residency(TrayHost& host) : m_host(host) {
    connect(&host, &TrayHost::availableChanged, this, &Residency::follow);
    // A tray may have gone without a word.
    connect(qGuiApp, &QGuiApplication::lastWindowClosed, &host, &TrayHost::look);
    connect(qGuiApp, &QGuiApplication::lastWindowClosed, this, [this] {
        if (!m_host.isAvailable())
            sayThatThereIsNoPlace();
    });
    connect(&m_start, &QTimer::timeout, this, [this] {
        if (!m_host.isAvailable())
            sayThatThereIsNoPlace();
    });
    m_start.setSingleShot(true);
    m_start.start(patience);
    QGuiApplication::setQuitOnLastWindowClosed(!host.isAvailable());
}

void Residency::follow() {
    QGuiApplication::setQuitOnLastWindowClosed(!m_host.isAvailable());
    if (!m_host.isAvailable() && !hasWindow())
        QCoreApplication::quit();
}

void Residency::sayThatThereIsNoPlace() {
    if (std::exchange(m_hasSaid, true))
        return;
    Logger{"com.tidewright.app", "shell"}.log(
        LogLevel::notice, "This desktop has no system tray, so Tidewright shows no status item and "
                          "ends when its window is closed.");
}

} // namespace tidewright
