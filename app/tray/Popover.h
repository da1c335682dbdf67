// A window that opens at the status item and goes with the next click elsewhere.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QQuickWindow>

namespace tidewright {

/// Main thread only. The window hides itself when it is no longer the active one; where it stands
/// and when it comes is decided here.
class Popover : public QObject {
    Q_OBJECT

public:
    /// `window` must outlive this.
    explicit Popover(QQuickWindow& window);

    /// Shows the window at the item, or hides it. A click on the item while the window is open
    /// takes its activation, hence hides it, and only then is told: that click shows nothing.
    void toggle(const QRect& item);

private:
    void place();

    QQuickWindow& m_window;
    QRect m_item;
    QElapsedTimer m_sinceHidden; ///< invalid until it was hidden once
};

} // namespace tidewright
