// The ground of a card, drawn: a rounded shape that fades from top to bottom, with a hairline
// around it, a light upper edge and a faint shadow.
#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace tidewright {

/// The shape stands in the item's middle, `margin` away from its sides, where the shadow lies.
class CardPicture : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QColor topColor MEMBER m_topColor NOTIFY changed)
    Q_PROPERTY(QColor bottomColor MEMBER m_bottomColor NOTIFY changed)
    Q_PROPERTY(QColor edgeColor MEMBER m_edgeColor NOTIFY changed)
    Q_PROPERTY(QColor outlineColor MEMBER m_outlineColor NOTIFY changed)
    Q_PROPERTY(double radius MEMBER m_radius NOTIFY changed)
    /// Clear where there is no shadow.
    Q_PROPERTY(QColor shadowNear MEMBER m_shadowNear NOTIFY changed)
    Q_PROPERTY(QColor shadowFar MEMBER m_shadowFar NOTIFY changed)
    Q_PROPERTY(double margin MEMBER m_margin NOTIFY changed)

public:
    explicit CardPicture(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    QColor m_topColor = Qt::transparent;
    QColor m_bottomColor = Qt::transparent;
    QColor m_edgeColor = Qt::transparent;
    QColor m_outlineColor = Qt::transparent;
    double m_radius = 0;
    QColor m_shadowNear = Qt::transparent;
    QColor m_shadowFar = Qt::transparent;
    double m_margin = 0;
};

} // namespace tidewright
