#include "app/tray/StatusItem.h"

#include "app/controls/StatusPill.h"

#include <QApplication>
#include <QCursor>

namespace tidewright {

namespace {

/// The older kind of item is a window within the tray's. Qt doesn't show it to screen readers; its
/// title is all by which others can know it.
void nameItemOfX(const QString& sentence) {
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (widget->inherits("QSystemTrayIconSys"))
            widget->setWindowTitle(sentence);
    }
}

} // namespace

StatusItem::StatusItem(MenuBarModel& model, Shell& shell, TrayHost& host)
    : m_model(model),
      m_host(host) {
    m_menu.addAction(tr("Open Tidewright"), &shell, &Shell::openMainWindow);
    m_menu.addAction(tr("Settings…"), &shell, &Shell::openSettings);
    m_menu.addAction(tr("About Tidewright"), &shell, &Shell::showAbout);
    m_menu.addSeparator();
    m_menu.addAction(tr("Quit Tidewright"), &shell, &Shell::quit);
    connect(&host, &TrayHost::availableChanged, this, &StatusItem::showWhenPossible);
    connect(&model, &MenuBarModel::statusChanged, this, &StatusItem::update);
    showWhenPossible();
}

void StatusItem::showWhenPossible() {
    if (m_icon || !m_host.isAvailable())
        return;
    m_icon = std::make_unique<QSystemTrayIcon>();
    connect(m_icon.get(), &QSystemTrayIcon::activated, this, &StatusItem::tellPress);
#ifndef Q_OS_MACOS // where a menu takes the place of the panel
    m_icon->setContextMenu(&m_menu);
#endif
    update();
    m_icon->show();
    nameItemOfX(m_model.sentence());
}

void StatusItem::update() {
    if (!m_icon)
        return;
    m_icon->setIcon(StatusPill::icon(m_model.health(), m_model.pillText()));
    m_icon->setToolTip(m_model.sentence());
    nameItemOfX(m_model.sentence());
}

void StatusItem::tellPress(QSystemTrayIcon::ActivationReason reason) {
    // The second of two quick clicks comes as a double click alone.
    if (reason != QSystemTrayIcon::Trigger && reason != QSystemTrayIcon::DoubleClick)
        return;
    const QRect item = m_icon->geometry();
    Q_EMIT pressed(item.isEmpty() ? QRect(QCursor::pos(), QSize(1, 1)) : item);
}

} // namespace tidewright
