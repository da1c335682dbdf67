// A part of a ring that goes round while it is running.
#pragma once

#include "app/controls/MovingItem.h"

#include <QColor>

namespace tidewright {

class SpinnerArc : public MovingItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(bool running MEMBER m_running NOTIFY changed)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed)
    Q_PROPERTY(QColor trackColor MEMBER m_trackColor NOTIFY changed)

public:
    explicit SpinnerArc(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

protected:
    bool wantsToMove() const override { return m_running; }

private:
    bool m_running = true;
    QColor m_color = Qt::black;
    QColor m_trackColor = Qt::transparent;
};

} // namespace tidewright
