// A rounded bar, used from the left, with the part that could be freed at the end of the used one.
#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace tidewright {

class CapacityBarPicture : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(double usedFraction MEMBER m_usedFraction NOTIFY changed)
    Q_PROPERTY(double freeableFraction MEMBER m_freeableFraction NOTIFY changed)
    Q_PROPERTY(QColor tintTop MEMBER m_tintTop NOTIFY changed) ///< at the left end
    Q_PROPERTY(QColor tintBottom MEMBER m_tintBottom NOTIFY changed)
    Q_PROPERTY(QColor trackColor MEMBER m_trackColor NOTIFY changed)
    Q_PROPERTY(QColor freedColor MEMBER m_freedColor NOTIFY changed)

public:
    explicit CapacityBarPicture(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    double m_usedFraction = 0;
    double m_freeableFraction = 0;
    QColor m_tintTop = Qt::black;
    QColor m_tintBottom = Qt::black;
    QColor m_trackColor = Qt::transparent;
    QColor m_freedColor = Qt::transparent;
};

} // namespace tidewright
