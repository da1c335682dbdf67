// Where the window's program is put together.
#include "app/platform/Appearance.h"
#include "app/platform/Notifications.h"
#include "app/platform/StandardDefaults.h"
#include "app/screens/AppWindows.h"

#include <QGuiApplication>
#include <QOpenGLContext>

#include <clocale>

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

int runApplication(int argumentCount, char** arguments) {
    QGuiApplication application(argumentCount, arguments);
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Tidewright"));
    QGuiApplication::setApplicationVersion(QStringLiteral(TIDEWRIGHT_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("tidewright"));
    drawByProcessorWhereThereIsNoGraphics();
    // Qt takes over the user's locale; numbers are written and read in one way all the same.
    std::setlocale(LC_NUMERIC, "C");

    Workers workers;
    DefaultsStore defaults(standardDefaults(),
                           argumentDefaults(QCoreApplication::arguments().mid(1)));
    AppModel model(AppEnvironment::current(), defaults, workers);
    ScreenModels models(model);
    AppWindows windows(models);
    followAppearance(&windows.theme(), [theme = &windows.theme()](const Appearance& appearance) {
        theme->setSystemLook(lookOf(appearance));
    });
    AppWindows::bringToFront(windows.mainWindow());
    model.monitor().start();
    model.applyLaunchArguments(defaults);
    if (model.settings().notificationsEnabled())
        askToPostNotifications();
    return QGuiApplication::exec();
}

} // namespace
} // namespace tidewright

int main(int argumentCount, char** arguments) {
    return tidewright::runApplication(argumentCount, arguments);
}
