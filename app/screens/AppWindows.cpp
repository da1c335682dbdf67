#include "app/screens/AppWindows.h"

#include "app/controls/SymbolImageProvider.h"
#include "core/support/Require.h"

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

} // namespace

void registerStateTypes() {
    registerType<AppModel>("AppModel");
    registerType<AppUsageListModel>("AppUsageListModel");
    registerType<CategoryListModel>("CategoryListModel");
    registerType<FoundListModel>("FoundListModel");
    registerType<HistoryListModel>("HistoryListModel");
    registerType<InsightListModel>("InsightListModel");
    registerType<ItemListModel>("ItemListModel");
    registerType<LargeFileListModel>("LargeFileListModel");
    registerType<MenuBarModel>("MenuBarModel");
    registerType<OverviewModel>("OverviewModel");
    registerType<ProjectListModel>("ProjectListModel");
    registerType<ScreenModels>("ScreenModels");
    registerType<SessionListModel>("SessionListModel");
    registerType<Shell>("Shell");
    registerType<SidebarModel>("SidebarModel");
    registerType<TableModel>("TableModel");
}

AppWindows::AppWindows(ScreenModels& models) {
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
        known = qobject_cast<QQuickWindow*>(m_engine.rootObjects().constLast());
        require(known != nullptr, "A window is none.");
    }
    return *known;
}

void AppWindows::bringToFront(QQuickWindow& window) {
    window.show();
    window.raise();
    window.requestActivate();
}

} // namespace tidewright
