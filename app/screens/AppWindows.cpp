#include "app/screens/AppWindows.h"

#include "app/controls/SymbolImageProvider.h"
#include "core/support/Require.h"

#include <QGuiApplication>
#include <QPointer>
#include <QtQml/QQmlExtensionPlugin>

Q_IMPORT_QML_PLUGIN(Tidewright_ControlsPlugin)
Q_IMPORT_QML_PLUGIN(Tidewright_ScreensPlugin)

namespace tidewright {

namespace {

template <class Type>
void registerType(const char* name) {
    qmlRegisterUncreatableType<Type>("Tidewright.State", 1, 0, name,
                                     QStringLiteral("The program makes it."));
}

/// What other programs call the window by where the desktop is X11; else 0.
Int64 x11Number(const QPointer<QWindow>& window) {
    const bool isX11 = QGuiApplication::platformName() == QLatin1String("xcb");
    return window && isX11 ? static_cast<Int64>(window->winId()) : 0;
}

} // namespace

void registerStateTypes() {
    registerType<AppModel>("AppModel");
    registerType<AppUsageListModel>("AppUsageListModel");
    registerType<CategoryListModel>("CategoryListModel");
    registerType<FoundListModel>("FoundListModel");
    registerType<FolderEntry>("FolderEntry");
    registerType<HistoryListModel>("HistoryListModel");
    registerType<InsightListModel>("InsightListModel");
    registerType<ItemListModel>("ItemListModel");
    registerType<LargeFileListModel>("LargeFileListModel");
    registerType<MenuBarModel>("MenuBarModel");
    registerType<OverviewModel>("OverviewModel");
    registerType<PathListModel>("PathListModel");
    registerType<ProjectListModel>("ProjectListModel");
    registerType<ScreenModels>("ScreenModels");
    registerType<SessionListModel>("SessionListModel");
    registerType<SettingsModel>("SettingsModel");
    registerType<Shell>("Shell");
    registerType<SidebarModel>("SidebarModel");
    registerType<TableModel>("TableModel");
    registerType<ThresholdListModel>("ThresholdListModel");
}

AppWindows::AppWindows(ScreenModels& models) : m_models(models) {
    registerStateTypes();
    m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    m_engine.addImageProvider(SymbolImageProvider::name(), new SymbolImageProvider);
    m_engine.setInitialProperties({{QStringLiteral("models"), QVariant::fromValue(&models)}});
    mainWindow();
    // Its module is known from here on.
    m_theme = m_engine.singletonInstance<Theme*>(qmlTypeId("Tidewright.Controls", 1, 0, "Theme"));
    require(m_theme != nullptr, "The window's theme is missing.");
}

QQuickWindow& AppWindows::window(QQuickWindow*& known, const char* file) {
    if (known == nullptr) {
        const auto before = m_engine.rootObjects().size();
        m_engine.load(QStringLiteral("qrc:/qt/qml/Tidewright/Screens/") +
                      QString::fromLatin1(file));
        require(m_engine.rootObjects().size() > before, "A window can't be loaded.");
        QObject* const loaded = m_engine.rootObjects().constLast();
        require(qobject_cast<QQuickWindow*>(loaded) != nullptr, "A window is none.");
        known = static_cast<QQuickWindow*>(loaded);
    }
    return *known;
}

QQuickWindow& AppWindows::settings() {
    QQuickWindow& shown = window(m_settings, "settings/SettingsWindow.qml");
    for (PathListModel* list :
         {m_models.settings()->projectRoots(), m_models.settings()->exclusions()})
        list->setWindow([window = QPointer<QWindow>(&shown)] { return x11Number(window); });
    return shown;
}

void AppWindows::bringToFront(QQuickWindow& window) {
    window.show();
    window.raise();
    window.requestActivate();
}

} // namespace tidewright
