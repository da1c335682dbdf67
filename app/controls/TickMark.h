// The tick in a box that is ticked.
#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace tidewright {

/// A thick one, which the pictures of the symbols are not: they are for larger sizes.
class TickMark : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QColor color MEMBER m_color NOTIFY colorChanged)

public:
    explicit TickMark(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

    /// The same in a square of another picture.
    static void paint(QPainter& painter, const QRectF& square, const QColor& color);

Q_SIGNALS:
    void colorChanged();

private:
    QColor m_color = Qt::black;
};

} // namespace tidewright
