#include "app/controls/CardPicture.h"

#include <QPainter>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

class CardPictureTest : public testing::Test {
protected:
    /// Of 60 by 40 pixels at 100 %.
    QImage picture(double scale = 1) {
        QImage image(QSize(60, 40) * scale, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.scale(scale, scale);
        m_card.setSize({60, 40});
        m_card.paint(&painter);
        painter.end();
        return image.convertToFormat(QImage::Format_ARGB32);
    }
    void set(const char* name, const QVariant& value) {
        ASSERT_TRUE(m_card.setProperty(name, value)) << name;
    }

    CardPicture m_card;
};

TEST_F(CardPictureTest, FadesFromTopToBottom) {
    set("topColor", QColor(Qt::red));
    set("bottomColor", QColor(Qt::blue));
    const QImage image = picture();
    EXPECT_GT(image.pixelColor(30, 0).red(), 245);
    EXPECT_GT(image.pixelColor(30, 39).blue(), 245);
    EXPECT_NEAR(image.pixelColor(30, 20).red(), 127, 6);
    EXPECT_EQ(image.pixelColor(0, 20), image.pixelColor(59, 20)) << "not from side to side";
}

TEST_F(CardPictureTest, KeepsItsColourWhereItIsTheSame) {
    const QColor half(255, 255, 255, 128);
    set("topColor", half);
    set("bottomColor", half);
    const QImage image = picture();
    for (const QPoint point : {QPoint(0, 0), QPoint(30, 20), QPoint(59, 39)})
        EXPECT_EQ(image.pixelColor(point), half);
}

TEST_F(CardPictureTest, HasRoundCorners) {
    set("topColor", QColor(Qt::red));
    set("bottomColor", QColor(Qt::red));
    set("radius", 12);
    const QImage image = picture();
    for (const QPoint corner : {QPoint(0, 0), QPoint(59, 0), QPoint(0, 39), QPoint(59, 39)})
        EXPECT_EQ(image.pixelColor(corner).alpha(), 0);
    EXPECT_EQ(image.pixelColor(12, 0).alpha(), 255);
    set("radius", 500); // no more than half of the shorter side
    EXPECT_EQ(picture().pixelColor(21, 0).alpha(), 255);
}

// One pixel at 100 %, and as many pixels of the screen as it has to a pixel above.
TEST_F(CardPictureTest, LinesAreCrispAtEachScale) {
    set("outlineColor", QColor(Qt::red));
    set("edgeColor", QColor(Qt::green));
    for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
        const QImage image = picture(scale);
        const int line = static_cast<int>(scale);
        const int middle = image.width() / 2;
        for (int y = 0; y < 3 * line; ++y) {
            const QColor expected = y < line       ? QColor(Qt::red)
                                    : y < 2 * line ? QColor(Qt::green)
                                                   : QColor(0, 0, 0, 0);
            EXPECT_EQ(image.pixelColor(middle, y), expected) << "row " << y << " at " << scale;
        }
        EXPECT_EQ(image.pixelColor(middle, image.height() - 1), QColor(Qt::red));
        EXPECT_EQ(image.pixelColor(middle, image.height() - 1 - line).alpha(), 0);
        EXPECT_EQ(image.pixelColor(0, image.height() / 2), QColor(Qt::red));
        EXPECT_EQ(image.pixelColor(line, image.height() / 2).alpha(), 0);
    }
}

TEST_F(CardPictureTest, ShadowLiesAroundTheCardAndNotUnderIt) {
    set("radius", 4);
    set("margin", 10);
    set("shadowFar", QColor(0, 0, 0, 255));
    const QImage image = picture();
    EXPECT_EQ(image.pixelColor(30, 20).alpha(), 0);
    EXPECT_EQ(image.pixelColor(30, 28).alpha(), 0) << "still inside";
    EXPECT_GT(image.pixelColor(30, 31).alpha(), 0);
    EXPECT_GT(image.pixelColor(30, 31).alpha(), image.pixelColor(30, 8).alpha()) << "it falls down";
    set("shadowFar", QColor(Qt::transparent));
    EXPECT_EQ(picture().pixelColor(30, 31).alpha(), 0);
}

TEST_F(CardPictureTest, DrawsNothingWhereThereIsNoRoom) {
    set("topColor", QColor(Qt::red));
    set("bottomColor", QColor(Qt::red));
    set("margin", 20);
    EXPECT_EQ(picture().pixelColor(30, 20).alpha(), 0);
}

} // namespace
} // namespace tidewright
