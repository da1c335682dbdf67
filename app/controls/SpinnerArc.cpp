#include "app/controls/SpinnerArc.h"

#include <QPainter>
#include <QPen>

#include <algorithm>
#include <cmath>

namespace tidewright {

namespace {

constexpr double secondsPerTurn = 0.9;
constexpr double lineShare = 0.13; // of the side
constexpr double arcDegrees = 100;
constexpr int degreeParts = 16; // of QPainter's angles

} // namespace

SpinnerArc::SpinnerArc(QQuickItem* parent) : MovingItem(parent) {
    connect(this, &SpinnerArc::changed, this, [this] {
        updateMotion();
        update();
    });
}

void SpinnerArc::paint(QPainter* painter) {
    const double side = std::min(width(), height());
    const double line = std::max(side * lineShare, 1.5);
    QRectF ring(0, 0, side - line, side - line);
    ring.moveCenter(boundingRect().center());

    painter->setRenderHint(QPainter::Antialiasing);
    QPen pen(m_trackColor, line, Qt::SolidLine, Qt::RoundCap);
    painter->setPen(pen);
    painter->drawEllipse(ring);

    const double turned = isMoving() ? std::fmod(now(), secondsPerTurn) / secondsPerTurn : 0;
    pen.setColor(m_color);
    painter->setPen(pen);
    painter->drawArc(ring, static_cast<int>((90 - 360 * turned) * degreeParts),
                     static_cast<int>(-arcDegrees * degreeParts));
}

} // namespace tidewright
