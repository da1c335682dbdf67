#include "app/controls/TickMark.h"

#include <QPainter>
#include <QPen>

#include <algorithm>

namespace tidewright {

TickMark::TickMark(QQuickItem* parent) : QQuickPaintedItem(parent) {
    connect(this, &TickMark::colorChanged, this, [this] { update(); });
}

void TickMark::paint(QPainter* painter) {
    // In parts of the side.
    constexpr QPointF points[] = {{0.29, 0.53}, {0.44, 0.68}, {0.72, 0.36}};
    constexpr double line = 0.125;
    painter->setRenderHint(QPainter::Antialiasing);
    const double side = std::min(width(), height());
    painter->scale(side, side);
    painter->setPen(QPen(m_color, line, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPolyline(points, static_cast<int>(std::size(points)));
}

} // namespace tidewright
