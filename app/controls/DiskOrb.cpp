#include "app/controls/DiskOrb.h"

#include "app/controls/ThemeColors.h"

#include <QBrush>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QRadialGradient>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tidewright {

namespace {

QColor white(double alpha) { return QColor::fromRgbF(1, 1, 1, static_cast<float>(alpha)); }

QColor black(double alpha) { return QColor::fromRgbF(0, 0, 0, static_cast<float>(alpha)); }

/// From clear at `from` to the colour at `to`, so softly that neither end can be seen.
void fade(QGradient& gradient, double from, double to, QColor color) {
    constexpr int steps = 12;
    const float alpha = color.alphaF();
    for (int step = 0; step <= steps; ++step) {
        const double part = static_cast<double>(step) / steps;
        color.setAlphaF(alpha * static_cast<float>(part * part * (1.5 - part / 2)));
        gradient.setColorAt(from + (to - from) * part, color);
    }
}

QImage clearImage(int side) {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

/// Everything in these is measured in parts of the side.
class Canvas {
public:
    explicit Canvas(QImage& image) : m_painter(&image), m_side(image.width()) {
        m_painter.setRenderHint(QPainter::Antialiasing);
        m_painter.setPen(Qt::NoPen);
        m_painter.scale(m_side, m_side);
    }

    void fillCircle(const QBrush& brush) { fillEllipse({0, 0, 1, 1}, brush); }

    void fillEllipse(const QRectF& rect, const QBrush& brush) {
        m_painter.setBrush(brush);
        m_painter.drawEllipse(rect);
    }

    /// Light that fades from the middle of an ellipse to its edge.
    void glow(const QRectF& rect, double degrees, const QColor& color) {
        m_painter.save();
        m_painter.translate(rect.center());
        m_painter.rotate(degrees);
        m_painter.scale(rect.width() / 2, rect.height() / 2);
        QRadialGradient gradient(QPointF(0, 0), 1);
        fade(gradient, 1, 0, color);
        m_painter.setBrush(gradient);
        m_painter.drawEllipse(QPointF(0, 0), 1, 1);
        m_painter.restore();
    }

    /// Along the edge, on its inside.
    void stroke(double width, double leastPixels, const QColor& color) {
        const double line = std::max(width, leastPixels / m_side);
        m_painter.setBrush(Qt::NoBrush);
        m_painter.setPen(QPen(color, line));
        m_painter.drawEllipse(
            QRectF(0, 0, 1, 1).adjusted(line / 2, line / 2, -line / 2, -line / 2));
        m_painter.setPen(Qt::NoPen);
    }

    void draw(const QImage& image) { m_painter.drawImage(QRectF(0, 0, 1, 1), image); }

    void cutToCircle() {
        m_painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        QImage circle = clearImage(static_cast<int>(m_side));
        Canvas(circle).fillCircle(Qt::black);
        m_painter.drawImage(QRectF(0, 0, 1, 1), circle);
        m_painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    }

private:
    QPainter m_painter;
    double m_side;
};

QRadialGradient ring(double from, const QColor& color) {
    QRadialGradient gradient(QPointF(0.5, 0.5), 0.5);
    fade(gradient, from, 1, color);
    return gradient;
}

QImage drawGloss(int side, bool isDark) {
    QImage image = clearImage(side);
    Canvas canvas(image);
    canvas.fillCircle(ring(0.55, black(0.2)));
    canvas.stroke(0.008, 1, white(0.5));
    canvas.fillCircle(ring(0.78, white(0.32)));
    canvas.glow({0.15, 0.05, 0.42, 0.3}, -26, white(0.85));
    canvas.stroke(0.005, 0.75, isDark ? white(0.3) : black(0.1));
    return image;
}

QImage drawEmpty(const QImage& gloss, bool isDark) {
    QImage image = clearImage(gloss.width());
    Canvas canvas(image);
    canvas.fillCircle(isDark ? white(0.06) : black(0.04));
    canvas.draw(gloss);
    return image;
}

/// The liquid fades from the surface, a part of the side from the top, to the bottom.
QImage drawFull(const QImage& gloss,
                const QImage& empty,
                const LiquidColors& colors,
                double surface) {
    QImage image = empty;
    Canvas canvas(image);
    QLinearGradient gradient(0, std::min(surface, 0.99), 0, 1);
    gradient.setColorAt(0, colors.top);
    gradient.setColorAt(1, colors.bottom);
    canvas.fillCircle(gradient);
    canvas.glow({0.04, surface - 0.16, 0.92, 0.46}, 0, white(0.22));
    canvas.cutToCircle();
    canvas.draw(gloss);
    return image;
}

QPainterPath liquidPath(const QRectF& square, double level, double time) {
    const auto points = wavePoints(square, level, time);
    const double floor = square.bottom() + 2;
    QPainterPath path(QPointF(points.front().x(), floor));
    for (const QPointF& point : points)
        path.lineTo(point);
    path.lineTo(points.back().x(), floor);
    path.closeSubpath();
    return path;
}

} // namespace

DiskOrb::DiskOrb(QQuickItem* parent) : MovingItem(parent) {}

void DiskOrb::setUsedFraction(double fraction) {
    if (fraction == m_transition.to)
        return;
    m_transition = {level(), fraction, now()};
    Q_EMIT usedFractionChanged();
    update();
}

void DiskOrb::setHealth(const QString& health) {
    if (health == m_health)
        return;
    m_health = health;
    Q_EMIT healthChanged();
    update();
}

void DiskOrb::setDark(bool isDark) {
    if (isDark == m_isDark)
        return;
    m_isDark = isDark;
    Q_EMIT darkChanged();
    update();
}

void DiskOrb::appeared() {
    if (m_start)
        return;
    m_start = now();
    m_transition = {0, m_transition.to, *m_start};
}

double DiskOrb::level() const {
    if (reduceMotion())
        return m_transition.to;
    return m_start ? m_transition.levelAt(now()) : 0;
}

double DiskOrb::time() const { return m_start && !reduceMotion() ? now() - *m_start : 0; }

void DiskOrb::preparePictures(const Look& look) {
    if (look == m_look)
        return;
    const Look before = std::exchange(m_look, look);
    if (before.side != look.side || before.isDark != look.isDark) {
        m_gloss = drawGloss(look.side, look.isDark);
        m_empty = drawEmpty(m_gloss, look.isDark);
    }
    m_full = drawFull(m_gloss, m_empty, liquidColors(look.health),
                      static_cast<double>(look.surface) / look.side);
}

void DiskOrb::paint(QPainter* painter) {
    const double scale = painter->deviceTransform().m11();
    const int side = static_cast<int>(std::floor(std::min(width(), height()) * scale));
    if (side <= 0)
        return;
    const double shown = std::clamp(level(), 0.0, 1.0);
    preparePictures({side, m_isDark, m_health, static_cast<int>(std::lround((1 - shown) * side))});

    // In the pixels of the screen, so that the pictures are copied and not resampled.
    const QPointF corner(std::floor((width() * scale - side) / 2),
                         std::floor((height() * scale - side) / 2));
    painter->scale(1 / scale, 1 / scale);
    painter->translate(corner);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setCompositionMode(QPainter::CompositionMode_Source);
    painter->drawImage(QPointF(0, 0), m_empty);
    painter->fillPath(liquidPath(QRectF(0, 0, side, side), shown, time()), QBrush(m_full));
}

} // namespace tidewright
