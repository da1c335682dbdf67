#include "app/controls/CapacityBarPicture.h"

#include <QPainter>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

/// 100 by 18 pixels, of which the middle row is looked at.
class CapacityBarPictureTest : public testing::Test {
protected:
    CapacityBarPictureTest() {
        m_bar.setSize({100, 18});
        m_bar.setProperty("trackColor", QColor(Qt::gray));
        m_bar.setProperty("tintTop", QColor(Qt::red));
        m_bar.setProperty("tintBottom", QColor(Qt::blue));
        m_bar.setProperty("freedColor", QColor(Qt::green));
    }

    QImage picture(double used, double freeable) {
        m_bar.setProperty("usedFraction", used);
        m_bar.setProperty("freeableFraction", freeable);
        QImage image(100, 18, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        m_bar.paint(&painter);
        painter.end();
        return image.convertToFormat(QImage::Format_ARGB32);
    }

    CapacityBarPicture m_bar;
};

TEST_F(CapacityBarPictureTest, FillsTheUsedPartFromOneTintToTheOther) {
    const QImage image = picture(0.6, 0);
    EXPECT_GT(image.pixelColor(1, 9).red(), 240);
    EXPECT_GT(image.pixelColor(58, 9).blue(), 240);
    EXPECT_NEAR(image.pixelColor(30, 9).red(), 127, 5);
    EXPECT_EQ(image.pixelColor(61, 9), QColor(Qt::gray));
    EXPECT_EQ(image.pixelColor(98, 9), QColor(Qt::gray));
}

TEST_F(CapacityBarPictureTest, FreedPartIsTheEndOfTheUsedOne) {
    const QImage image = picture(0.6, 0.2);
    EXPECT_EQ(image.pixelColor(38, 9).green(), 0);
    EXPECT_EQ(image.pixelColor(41, 9), QColor(Qt::green));
    EXPECT_EQ(image.pixelColor(58, 9), QColor(Qt::green));
    EXPECT_EQ(image.pixelColor(61, 9), QColor(Qt::gray));
}

TEST_F(CapacityBarPictureTest, FreedPartIsNeverMoreThanTheUsedOne) {
    const QImage image = picture(0.3, 0.9);
    EXPECT_EQ(image.pixelColor(1, 9), QColor(Qt::green));
    EXPECT_EQ(image.pixelColor(28, 9), QColor(Qt::green));
    EXPECT_EQ(image.pixelColor(31, 9), QColor(Qt::gray));
}

TEST_F(CapacityBarPictureTest, EndsAreRound) {
    for (const double used : {0.0, 0.5, 1.0}) {
        const QImage image = picture(used, 0);
        for (const QPoint corner : {QPoint(0, 0), QPoint(99, 0), QPoint(0, 17), QPoint(99, 17)})
            EXPECT_EQ(image.pixelColor(corner).alpha(), 0) << used;
    }
    EXPECT_EQ(picture(0.5, 0).pixelColor(49, 0), QColor(Qt::gray));
    EXPECT_NE(picture(0.5, 0).pixelColor(49, 9), QColor(Qt::gray));
}

TEST_F(CapacityBarPictureTest, NothingAndTooMuchAreTheEnds) {
    for (const double nothing : {0.0, -1.0})
        EXPECT_EQ(picture(nothing, 0.5).pixelColor(50, 9), QColor(Qt::gray));
    EXPECT_EQ(picture(7, 0), picture(1, 0));
    EXPECT_GT(picture(1, 0).pixelColor(98, 9).blue(), 240);
}

} // namespace
} // namespace tidewright
