#include "app/screens/MainWindow.h"

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
    registerType<HistoryListModel>("HistoryListModel");
    registerType<InsightListModel>("InsightListModel");
    registerType<ItemListModel>("ItemListModel");
    registerType<LargeFileListModel>("LargeFileListModel");
    registerType<OverviewModel>("OverviewModel");
    registerType<ProjectListModel>("ProjectListModel");
    registerType<ScreenModels>("ScreenModels");
    registerType<SessionListModel>("SessionListModel");
    registerType<SidebarModel>("SidebarModel");
}

MainWindow::MainWindow(ScreenModels& models) {
    registerStateTypes();
    m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    m_engine.addImageProvider(SymbolImageProvider::name(), new SymbolImageProvider);
    m_engine.setInitialProperties({{QStringLiteral("models"), QVariant::fromValue(&models)}});
    m_engine.load(QStringLiteral("qrc:/qt/qml/Tidewright/Screens/shell/Main.qml"));
    require(!m_engine.rootObjects().isEmpty(), "The main window can't be loaded.");
    m_window = qobject_cast<QQuickWindow*>(m_engine.rootObjects().constFirst());
    // Its module is known from here on.
    m_theme = m_engine.singletonInstance<Theme*>(qmlTypeId("Tidewright.Controls", 1, 0, "Theme"));
    require(m_window != nullptr && m_theme != nullptr, "The main window is incomplete.");
}

void MainWindow::bringToFront() {
    m_window->show();
    m_window->raise();
    m_window->requestActivate();
}

} // namespace tidewright
