#include "app/controls/TickMark.h"

#include <QPainter>
#include <QPen>

#include <algorithm>

namespace tidewright {

TickMark::TickMark(QQuickItem* parent) : QQuickPaintedItem(parent) {
    connect(this, &TickMark::colorChanged, this, [this] { update(); });
}

void TickMark::paint(QPainter* painter) {
    const double side = std::min(width(), height());
    paint(*painter, {0, 0, side, side}, m_color);
}

void TickMark::paint(QPainter& painter, const QRectF& square, const QColor& color) {
    // In parts of the side.
    constexpr QPointF points[] = {{0.29, 0.53}, {0.44, 0.68}, {0.72, 0.36}};
    constexpr double line = 0.125;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(square.topLeft());
    painter.scale(square.width(), square.height());
    painter.setPen(QPen(color, line, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(points, static_cast<int>(std::size(points)));
    painter.restore();
}

} // namespace tidewright
