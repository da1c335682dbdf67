// The main window: loads its screens and gives them the program's state.
#pragma once

#include "app/controls/Theme.h"
#include "app/state/ScreenModels.h"

#include <QQmlApplicationEngine>
#include <QQuickWindow>

namespace tidewright {

/// Makes the state's classes known to QML as `Tidewright.State`. More than once does no harm.
void registerStateTypes();

/// Main thread only.
class MainWindow {
public:
    /// `models` must outlive this. A window that can't be loaded ends the program: its parts are
    /// within the program.
    explicit MainWindow(ScreenModels& models);

    QQuickWindow& window() { return *m_window; }
    Theme& theme() { return *m_theme; }
    QQmlApplicationEngine& engine() { return m_engine; }

    /// Shows it before all other windows.
    void bringToFront();

private:
    QQmlApplicationEngine m_engine;
    QQuickWindow* m_window = nullptr; ///< of the engine
    Theme* m_theme = nullptr;         ///< of the engine
};

} // namespace tidewright
