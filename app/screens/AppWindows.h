// The windows of the program: loads their screens and gives them the program's state.
#pragma once

#include "app/controls/Theme.h"
#include "app/state/ScreenModels.h"

#include <QQmlApplicationEngine>
#include <QQuickWindow>

namespace tidewright {

/// Makes the state's classes known to QML as `Tidewright.State`. More than once does no harm.
void registerStateTypes();

/// Main thread only. Each window is made when it is first asked for, hidden, and lives as long as
/// this. One that can't be loaded ends the program: its parts are within the program.
class AppWindows {
public:
    /// `models` must outlive this.
    explicit AppWindows(ScreenModels& models);

    QQuickWindow& mainWindow() { return window(m_mainWindow, "shell/Main.qml"); }
    QQuickWindow& panel() { return window(m_panel, "menubar/MenuBarPanel.qml"); }
    QQuickWindow& settings();

    Theme& theme() { return *m_theme; } ///< of all windows
    QQmlApplicationEngine& engine() { return m_engine; }

    /// Shows the window before all others.
    static void bringToFront(QQuickWindow& window);

private:
    QQuickWindow& window(QQuickWindow*& known, const char* file);

    ScreenModels& m_models;
    QQmlApplicationEngine m_engine;
    Theme* m_theme = nullptr; ///< of the engine, as the windows are
    QQuickWindow* m_mainWindow = nullptr;
    QQuickWindow* m_panel = nullptr;
    QQuickWindow* m_settings = nullptr;
};

} // namespace tidewright
