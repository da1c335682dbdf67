#include "app/controls/CapacityBarPicture.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace tidewright {

CapacityBarPicture::CapacityBarPicture(QQuickItem* parent) : QQuickPaintedItem(parent) {
    connect(this, &CapacityBarPicture::changed, this, [this] { update(); });
}

void CapacityBarPicture::paint(QPainter* painter) {
    const QRectF bar = boundingRect();
    const double radius = bar.height() / 2;
    QPainterPath track;
    track.addRoundedRect(bar, radius, radius);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->fillPath(track, m_trackColor);

    const double used = bar.width() * std::clamp(m_usedFraction, 0.0, 1.0);
    if (used <= 0)
        return;
    // Rounded at its right end as well, however short it is.
    QPainterPath filled;
    filled.addRoundedRect(bar.translated(used - bar.width(), 0), radius, radius);
    filled &= track;
    QLinearGradient tint(bar.left(), 0, bar.left() + used, 0);
    tint.setColorAt(0, m_tintTop);
    tint.setColorAt(1, m_tintBottom);
    painter->fillPath(filled, tint);

    const double freed =
        bar.width() * std::clamp(m_freeableFraction, 0.0, std::clamp(m_usedFraction, 0.0, 1.0));
    if (freed <= 0)
        return;
    QPainterPath end;
    end.addRect(bar.left() + used - freed, bar.top(), freed, bar.height());
    painter->fillPath(end & filled, m_freedColor);
}

} // namespace tidewright
