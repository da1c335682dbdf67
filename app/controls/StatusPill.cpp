#include "app/controls/StatusPill.h"

#include "app/controls/SymbolPicture.h"
#include "app/controls/Theme.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tidewright {

namespace {

constexpr double pillHeight = 15;
constexpr double minimumWidth = 21;
constexpr double cornerRadius = 4.5;
constexpr double padding = 5; ///< left and right
constexpr double spacing = 3;
constexpr double symbolHeight = 9;
constexpr int textSize = 10;

constexpr double whiteness = 0.06; ///< of the ground
constexpr double edgeOpacity = 0.35;
// White alone can hardly be read on the lighter colours: a shade of the ground lies around it.
constexpr double shadeOpacity = 0.22; ///< of each of the `shadeSteps`
constexpr int shadeSteps = 12;

QColor mixed(const QColor& color, const QColor& other, double part) {
    const auto mix = [part](float from, float to) {
        return from + (to - from) * static_cast<float>(part);
    };
    return QColor::fromRgbF(mix(color.redF(), other.redF()), mix(color.greenF(), other.greenF()),
                            mix(color.blueF(), other.blueF()));
}

struct Mark {
    QString name;
    double width; ///< where its height is 1
};

Mark markOf(const QString& health) {
    if (health == QLatin1String("good"))
        return {QStringLiteral("internaldrive.fill"), 1};
    return {QStringLiteral("exclamationmark"), 0.42};
}

/// Whether these are pixels of a picture, and not too many.
bool canBeDrawn(QSizeF pixels) {
    constexpr double largest = 4096;
    return pixels.width() >= 1 && pixels.width() <= largest && pixels.height() >= 1 &&
           pixels.height() <= largest;
}

QImage instead(const QString& health) {
    constexpr int side = static_cast<int>(pillHeight);
    return symbolPicture(QStringLiteral("internaldrive"), {side, side},
                         liquidColors(health).bottom);
}

QImage clearImage(QSizeF pixels) {
    QImage image(pixels.toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

/// A pill in the making; all in pixels of the screen.
class Pill {
public:
    Pill(const QString& health, QSizeF pixels, double scale)
        : m_health(health),
          m_scale(scale),
          m_ink(clearImage(pixels)) {}

    void drawSymbol(QPointF topLeft, double height) {
        const Mark mark = markOf(m_health);
        const QSize size = QSizeF(std::ceil(mark.width * height), height).toSize();
        const QImage symbol = symbolPicture(mark.name, size, Qt::white, SymbolWeight::bold);
        QPainter(&m_ink).drawImage(topLeft.toPoint(), symbol);
    }
    double symbolWidth(double height) const { return markOf(m_health).width * height; }
    void draw(const QPainterPath& text) {
        QPainter painter(&m_ink);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(text, Qt::white);
    }

    /// With the ground below what was drawn.
    QImage finished(double radius) const {
        QImage image = m_ink;
        image.fill(Qt::transparent);
        QPainter painter(&image);
        drawGround(painter, radius);
        painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
        drawShade(painter);
        painter.drawImage(0, 0, m_ink);
        painter.end();
        image.setDevicePixelRatio(m_scale);
        return image;
    }

private:
    void drawGround(QPainter& painter, double radius) const {
        const LiquidColors liquid = liquidColors(m_health);
        const QRectF bounds = m_ink.rect();
        QLinearGradient ground(bounds.topLeft(), bounds.bottomLeft());
        ground.setColorAt(0, mixed(liquid.top, Qt::white, whiteness));
        ground.setColorAt(1, mixed(liquid.bottom, Qt::white, whiteness));
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(ground);
        painter.drawRoundedRect(bounds, radius, radius);
        QColor edge(Qt::white);
        edge.setAlphaF(static_cast<float>(edgeOpacity));
        const double width = std::max(1.0, std::floor(m_scale));
        painter.setPen(QPen(edge, width));
        painter.setBrush(Qt::NoBrush);
        const double half = width / 2;
        painter.drawRoundedRect(bounds.adjusted(half, half, -half, -half), radius - half,
                                radius - half);
    }

    void drawShade(QPainter& painter) const {
        const QColor bottom = liquidColors(m_health).bottom.toHsl();
        QImage shade = m_ink;
        QPainter tint(&shade);
        tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
        tint.fillRect(shade.rect(), QColor::fromHslF(bottom.hslHueF(), 0.9F, 0.24F));
        tint.end();
        painter.save();
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.setOpacity(shadeOpacity);
        for (int step = 0; step < shadeSteps; ++step) {
            const double angle = 2 * std::numbers::pi * step / shadeSteps;
            const double distance = m_scale * (step % 2 == 0 ? 0.6 : 1.1);
            painter.drawImage(QPointF(std::cos(angle), std::sin(angle)) * distance, shade);
        }
        painter.restore();
    }

    QString m_health;
    double m_scale;
    QImage m_ink; ///< symbol and text, white on clear
};

QPainterPath pathOf(const QString& text, QPointF baseline, const QFont& font) {
    QPainterPath path;
    path.addText(baseline, font, text);
    return path;
}

/// The text with capitals of that height, on a baseline at 0, as wide as it is by nature or, where
/// that is too much, somewhat condensed. Empty where even that is too wide.
QPainterPath fitted(const QString& text, double capHeight, double largestWidth) {
    constexpr int drawnSize = 100;
    constexpr double mostCondensed = 0.78;
    const QFont font = Theme::font(drawnSize, QFont::Bold);
    const QPainterPath path = pathOf(text, {}, font);
    const double scale = capHeight / QFontMetricsF(font).capHeight();
    const QRectF bounds = path.boundingRect();
    const double condensed = std::min(1.0, largestWidth / (bounds.width() * scale));
    if (condensed < mostCondensed)
        return {};
    return QTransform::fromScale(scale * condensed, scale).translate(-bounds.left(), 0).map(path);
}

/// The same with the highest capitals that fit.
QPainterPath largest(const QString& text, int highestCaps, double largestWidth) {
    for (int capHeight = highestCaps; capHeight > 1; --capHeight) {
        const QPainterPath path = fitted(text, capHeight, largestWidth);
        if (!path.isEmpty())
            return path;
    }
    return {};
}

int part(int side, double fraction) { return static_cast<int>(std::lround(side * fraction)); }

void drawTwoLines(Pill& pill, const QString& text, int side) {
    const QString number = text.section(QLatin1Char(' '), 0, 0);
    const QString unit = text.section(QLatin1Char(' '), 1);
    const int margin = part(side, 0.1);
    const double room = side - 2 * part(side, 0.06);
    const QPainterPath digits = largest(number, part(side, 0.42), room);
    const double left = (side - digits.boundingRect().width()) / 2;
    pill.draw(digits.translated(left, side - margin));

    const int symbol = part(side, 0.36);
    const double symbolWidth = std::ceil(pill.symbolWidth(symbol));
    const int gap = std::max(1, part(side, 0.05));
    const QPainterPath letters = largest(unit, part(side, 0.25), room - symbolWidth - gap);
    const double width = symbolWidth + gap + letters.boundingRect().width();
    const double start = std::floor((side - width) / 2);
    pill.drawSymbol({start, margin - 1.0}, symbol);
    pill.draw(
        letters.translated(start + symbolWidth + gap, margin - 1 + symbol - part(side, 0.06)));
}

} // namespace

QImage StatusPill::image(const QString& health, const QString& text, double devicePixelRatio) {
    const QFont font = Theme::font(textSize, QFont::DemiBold);
    const QFontMetricsF metrics(font);
    const double words = text.isEmpty() ? 0 : spacing + metrics.horizontalAdvance(text);
    const double symbolWidth = markOf(health).width * symbolHeight;
    const double content = symbolWidth + words;
    const double width = std::max(minimumWidth, std::ceil(content + 2 * padding));
    const QSizeF pixels = QSizeF(width, pillHeight) * devicePixelRatio;
    if (!canBeDrawn(pixels))
        return instead(health);
    Pill pill(health, pixels, devicePixelRatio);
    const double left = (width - content) / 2;
    pill.drawSymbol(QPointF(left, (pillHeight - symbolHeight) / 2) * devicePixelRatio,
                    symbolHeight * devicePixelRatio);
    const double baseline = std::round((pillHeight + metrics.capHeight()) / 2 * devicePixelRatio);
    const QPainterPath path = pathOf(text, {left + symbolWidth + spacing, 0}, font);
    pill.draw(QTransform::fromScale(devicePixelRatio, devicePixelRatio)
                  .map(path)
                  .translated(0, baseline));
    return pill.finished(cornerRadius * devicePixelRatio);
}

QImage StatusPill::squareImage(const QString& health,
                               const QString& text,
                               int size,
                               double devicePixelRatio) {
    const QSizeF pixels = QSizeF(size, size) * devicePixelRatio;
    if (!canBeDrawn(pixels))
        return instead(health);
    const int side = static_cast<int>(std::lround(pixels.width()));
    Pill pill(health, QSizeF(side, side), devicePixelRatio);
    if (text.isEmpty()) {
        const int symbol = part(side, 0.64);
        pill.drawSymbol(QPointF(side - pill.symbolWidth(symbol), side - symbol) / 2, symbol);
    } else {
        drawTwoLines(pill, text, side);
    }
    return pill.finished(side * 0.22);
}

StatusPill::Shape StatusPill::usualShape() {
    return QGuiApplication::platformName() == QLatin1String("cocoa") ? Shape::wide : Shape::square;
}

QIcon StatusPill::icon(const QString& health, const QString& text, Shape shape) {
    QIcon icon;
    if (shape == Shape::wide)
        for (const double scale : {1, 2})
            icon.addPixmap(QPixmap::fromImage(image(health, text, scale)));
    else
        for (const int side : {16, 22, 24, 32, 44, 48, 64, 96, 128})
            icon.addPixmap(QPixmap::fromImage(squareImage(health, text, side, 1)));
    icon.setIsMask(false);
    return icon;
}

} // namespace tidewright
