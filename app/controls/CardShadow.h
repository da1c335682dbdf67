// Soft shadows of rounded shapes.
#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

namespace tidewright {

/// The shadow of a rounded rectangle that lies `offset` lower and fades over `blur` pixels on
/// either side of its edge. Main thread.
void drawShadow(QPainter& painter,
                const QRectF& shape,
                double radius,
                double blur,
                double offset,
                const QColor& color);

} // namespace tidewright
