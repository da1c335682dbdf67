// Where the window's program is put together.
#include "app/platform/Appearance.h"
#include "app/platform/Notifications.h"
#include "app/platform/SingleInstance.h"
#include "app/platform/StandardDefaults.h"
#include "app/screens/AppWindows.h"
#include "app/tray/Popover.h"
#include "app/tray/Residency.h"
#include "app/tray/StatusItem.h"

#include <QApplication>
#include <QOpenGLContext>

#include <clocale>
#include <optional>

namespace tidewright {
namespace {

SystemLook lookOf(const Appearance& appearance) {
    SystemLook look{appearance.prefersDark, {}, appearance.reducesMotion};
    if (const auto& accent = appearance.accent)
        look.accent =
            QColor::fromRgbF(static_cast<float>(accent->red), static_cast<float>(accent->green),
                             static_cast<float>(accent->blue));
    return look;
}

/// Without OpenGL, as on many a virtual machine, Qt Quick would end the program.
void drawByProcessorWhereThereIsNoGraphics() {
    QOpenGLContext context;
    if (!context.create())
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

/// Has the windows come when a screen, the status item or another start of the program asks.
void openOnDemand(Shell& shell, AppWindows& windows) {
    const auto openMainWindow = [&windows] { AppWindows::bringToFront(windows.mainWindow()); };
    QObject::connect(&shell, &Shell::openMainWindow, &shell, openMainWindow);
    QObject::connect(&shell, &Shell::showAbout, &shell, openMainWindow); // which shows it
    QObject::connect(&shell, &Shell::openSettings, &shell,
                     [&windows] { AppWindows::bringToFront(windows.settings()); });
    QObject::connect(&shell, &Shell::quit, qApp, &QCoreApplication::quit);
}

/// The status item, and the panel that opens at it.
class Face {
public:
    Face(ScreenModels& models, AppWindows& windows, TrayHost& host)
        : m_windows(windows),
          m_item(*models.menuBar(), *models.shell(), host) {
        QObject::connect(&m_item, &StatusItem::pressed, &m_item, [this](const QRect& item) {
            if (!m_popover)
                m_popover.emplace(m_windows.panel());
            m_popover->toggle(item);
        });
    }

private:
    AppWindows& m_windows;
    std::optional<Popover> m_popover; ///< from the first press on
    StatusItem m_item;
};

int runApplication(int argumentCount, char** arguments) {
    QApplication application(argumentCount, arguments);
    QCoreApplication::setApplicationName(QStringLiteral("Tidewright"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Tidewright"));
    QGuiApplication::setApplicationVersion(QStringLiteral(TIDEWRIGHT_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("tidewright"));
    Shell* shell = nullptr;
    if (!becomeOnlyInstance(&application, [&shell] { Q_EMIT shell->openMainWindow(); }))
        return 0; // the other one has come to the front
    drawByProcessorWhereThereIsNoGraphics();
    // Qt takes over the user's locale; numbers are written and read in one way all the same.
    std::setlocale(LC_NUMERIC, "C");

    Workers workers;
    DefaultsStore defaults(standardDefaults(),
                           argumentDefaults(QCoreApplication::arguments().mid(1)));
    AppModel model(AppEnvironment::current(), defaults, workers);
    ScreenModels models(model);
    shell = models.shell();
    AppWindows windows(models);
    openOnDemand(*shell, windows);
    followAppearance(&windows.theme(), [theme = &windows.theme()](const Appearance& appearance) {
        theme->setSystemLook(lookOf(appearance));
    });
    TrayHost host;
    const Residency residency(host);
    const Face face(models, windows, host);
    AppWindows::bringToFront(windows.mainWindow());
    model.monitor().start();
    model.applyLaunchArguments(defaults);
    if (model.settings().notificationsEnabled())
        askToPostNotifications();
    return QApplication::exec();
}

} // namespace
} // namespace tidewright

int main(int argumentCount, char** arguments) {
    return tidewright::runApplication(argumentCount, arguments);
}
