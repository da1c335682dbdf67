#include "app/controls/TickMark.h"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

TEST(TickMarkTest, IsDrawnInItsColourInTheMiddle) {
    for (const int side : {15, 30, 60}) {
        TickMark mark;
        mark.setProperty("color", QColor(Qt::red));
        mark.setSize(QSizeF(side, side));
        QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        mark.paint(&painter);
        painter.end();
        int inked = 0;
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x)
                if (qAlpha(image.pixel(x, y)) > 127) {
                    ++inked;
                    EXPECT_GT(qRed(image.pixel(x, y)), 100);
                    EXPECT_TRUE(x > side / 5 && x < side - side / 6 && y > side / 5) << x << y;
                }
        EXPECT_NEAR(static_cast<double>(inked) / (side * side), 0.08, 0.03) << side;
    }
}

} // namespace
} // namespace tidewright
