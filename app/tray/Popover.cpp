#include "app/tray/Popover.h"

#include "app/tray/PanelPlace.h"

#include <QGuiApplication>
#include <QScreen>

namespace tidewright {

namespace {

constexpr qint64 sameClick = 250; // ms, from the loss of activation to the click that caused it

} // namespace

Popover::Popover(QQuickWindow& window) : m_window(window) {
    connect(&window, &QWindow::visibleChanged, this, [this](bool isVisible) {
        if (!isVisible && !m_window.isActive())
            m_sinceLeft.start();
    });
    connect(&window, &QWindow::heightChanged, this, &Popover::place);
}

void Popover::toggle(const QRect& item) {
    if (m_window.isVisible()) {
        m_window.hide();
        return;
    }
    if (m_sinceLeft.isValid() && m_sinceLeft.elapsed() < sameClick)
        return;
    m_item = item;
    place();
    m_window.show();
    place(); // its content has settled
    m_window.requestActivate();
}

void Popover::place() {
    const QScreen* screen = QGuiApplication::screenAt(m_item.center());
    if (screen == nullptr)
        screen = QGuiApplication::primaryScreen();
    if (screen == nullptr)
        return;
    const int margin = m_window.property("margin").toInt();
    const QSize panel = m_window.size() - QSize(2 * margin, 2 * margin);
    m_window.setPosition(panelPlace(m_item, panel, screen->availableGeometry()) -
                         QPoint(margin, margin));
}

} // namespace tidewright
