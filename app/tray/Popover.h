// A window that opens at the status item and goes with the next click elsewhere.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QQuickWindow>

namespace tidewright {

/// Main thread only. The window hides itself when it is no longer the active one; where it stands
/// and when it comes is decided here. Its property `margin`, if there is one, is how far it reaches
/// beyond what is seen, on each side.
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
    QElapsedTimer m_sinceLeft; ///< since it was hidden for want of activation; at first invalid
};

} // namespace tidewright
