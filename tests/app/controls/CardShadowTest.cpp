#include "app/controls/CardShadow.h"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

QImage shadowOf(const QRectF& shape, double radius, double blur, double offset, double scale = 1) {
    QImage image(QSize(200, 200) * scale, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.scale(scale, scale);
    drawShadow(painter, shape, radius, blur, offset, Qt::black);
    painter.end();
    return image.convertToFormat(QImage::Format_ARGB32);
}

int alphaAt(const QImage& image, int x, int y) { return image.pixelColor(x, y).alpha(); }

TEST(CardShadowTest, FadesEvenlyOverTheEdge) {
    const QImage image = shadowOf({50, 50, 100, 100}, 16, 24, 0);
    EXPECT_GE(alphaAt(image, 100, 100), 254);
    EXPECT_NEAR(alphaAt(image, 100, 50), 127, 8) << "half of it at the edge";
    EXPECT_NEAR(alphaAt(image, 100, 38), 255 * 0.16, 10) << "a deviation outside";
    EXPECT_EQ(alphaAt(image, 100, 10), 0);
    for (int y = 11; y < 100; ++y)
        EXPECT_GE(alphaAt(image, 100, y), alphaAt(image, 100, y - 1)) << y;
}

TEST(CardShadowTest, IsAlikeOnAllSides) {
    const QImage image = shadowOf({50, 50, 100, 100}, 16, 24, 0);
    for (int distance = 0; distance < 100; ++distance) {
        const int above = alphaAt(image, 100, distance);
        EXPECT_NEAR(alphaAt(image, 100, 199 - distance), above, 1);
        EXPECT_NEAR(alphaAt(image, distance, 100), above, 1);
        EXPECT_NEAR(alphaAt(image, 199 - distance, 100), above, 1);
    }
}

TEST(CardShadowTest, FallsByItsOffset) {
    const QImage level = shadowOf({50, 50, 100, 100}, 16, 24, 0);
    const QImage fallen = shadowOf({50, 50, 100, 100}, 16, 24, 8);
    EXPECT_EQ(fallen.copy(0, 8, 200, 192), level.copy(0, 0, 200, 192));
}

TEST(CardShadowTest, IsTheSameAtTwiceTheScale) {
    const QImage once = shadowOf({50, 50, 100, 100}, 16, 24, 8);
    const QImage twice = shadowOf({50, 50, 100, 100}, 16, 24, 8, 2);
    for (int y = 0; y < 200; y += 7)
        EXPECT_NEAR(alphaAt(twice, 200, 2 * y + 1), alphaAt(once, 100, y), 8) << y;
}

TEST(CardShadowTest, OfASmallShapeIsWhole) {
    const QImage image = shadowOf({90, 90, 20, 20}, 4, 24, 0);
    EXPECT_GT(alphaAt(image, 100, 100), 40);
    EXPECT_NEAR(alphaAt(image, 80, 100), alphaAt(image, 119, 100), 1);
    EXPECT_NEAR(alphaAt(image, 100, 80), alphaAt(image, 100, 119), 1);
    EXPECT_EQ(alphaAt(image, 20, 20), 0);
}

} // namespace
} // namespace tidewright
