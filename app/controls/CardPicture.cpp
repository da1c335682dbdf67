#include "app/controls/CardPicture.h"

#include "app/controls/CardShadow.h"
#include "app/controls/Theme.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace tidewright {

namespace {

QPainterPath rounded(const QRectF& rect, double radius) {
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

} // namespace

CardPicture::CardPicture(QQuickItem* parent) : QQuickPaintedItem(parent) {
    connect(this, &CardPicture::changed, this, [this] { update(); });
}

void CardPicture::paint(QPainter* painter) {
    const double scale = painter->deviceTransform().m11();
    const double line = std::max(std::floor(scale), 1.0) / scale;
    const QRectF card = boundingRect().adjusted(m_margin, m_margin, -m_margin, -m_margin);
    if (card.isEmpty())
        return;
    const double radius = std::min({m_radius, card.width() / 2, card.height() / 2});
    const QPainterPath shape = rounded(card, radius);

    painter->setRenderHint(QPainter::Antialiasing);
    if (m_shadowFar.alpha() > 0 || m_shadowNear.alpha() > 0) {
        drawShadow(*painter, card, radius, Theme::shadowFarBlur, Theme::shadowFarOffset,
                   m_shadowFar);
        drawShadow(*painter, card, radius, Theme::shadowNearBlur, Theme::shadowNearOffset,
                   m_shadowNear);
        // Nothing of the shadow shows through the card.
        painter->setCompositionMode(QPainter::CompositionMode_DestinationOut);
        painter->fillPath(shape, Qt::black);
        painter->setCompositionMode(QPainter::CompositionMode_SourceOver);
    }

    QLinearGradient ground(card.topLeft(), card.bottomLeft());
    ground.setColorAt(0, m_topColor);
    ground.setColorAt(1, m_bottomColor);
    painter->fillPath(shape, m_topColor == m_bottomColor ? QBrush(m_topColor) : QBrush(ground));

    const QRectF inside = card.adjusted(line, line, -line, -line);
    const double insideRadius = std::max(radius - line, 0.0);
    painter->fillPath(rounded(inside, insideRadius) -
                          rounded(inside.translated(0, line), insideRadius),
                      m_edgeColor);
    painter->fillPath(shape - rounded(inside, insideRadius), m_outlineColor);
}

} // namespace tidewright
