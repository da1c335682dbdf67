// The program's face in the menu bar or the system tray: a pill with the health of the disk.
#pragma once

#include "app/state/MenuBarModel.h"
#include "app/state/Shell.h"
#include "app/tray/TrayHost.h"

#include <QMenu>
#include <QRect>
#include <QSystemTrayIcon>

#include <memory>

namespace tidewright {

/// Main thread only. It stands there from the moment on at which the desktop has a place for it.
class StatusItem : public QObject {
    Q_OBJECT

public:
    /// All must outlive this. What is chosen in the item's menu is asked of the shell.
    StatusItem(MenuBarModel& model, Shell& shell, TrayHost& host);

Q_SIGNALS:
    /// `item` is where the item is, in the coordinates of all screens, and where that is not known
    /// the pointer's place.
    void pressed(const QRect& item);

private:
    void showWhenPossible();
    void update();
    void tellPress(QSystemTrayIcon::ActivationReason reason);

    MenuBarModel& m_model;
    TrayHost& m_host;
    QMenu m_menu;
    std::unique_ptr<QSystemTrayIcon> m_icon; ///< none until there is a place
};

} // namespace tidewright
