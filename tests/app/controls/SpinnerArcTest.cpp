#include "app/controls/SpinnerArc.h"

#include "tests/support/gui/QmlScene.h"

#include <QPainter>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

QImage pictureOf(SpinnerArc& spinner) {
    QImage image(16, 16, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    spinner.paint(&painter);
    painter.end();
    return image;
}

TEST(SpinnerArcTest, TurnsWhileItMovesAndElseStandsAtItsBeginning) {
    QQuickWindow window;
    window.resize(40, 40);
    SpinnerArc spinner(window.contentItem());
    spinner.setSize({16, 16});
    double now = 0;
    spinner.setClock([&] { return now; });
    const QImage beginning = pictureOf(spinner);
    now = 0.3;
    EXPECT_EQ(pictureOf(spinner), beginning);

    window.show();
    ASSERT_TRUE(test::QmlScene::wait([&] { return spinner.isMoving(); }));
    EXPECT_NE(pictureOf(spinner), beginning);
    now = 0.9; // once round
    EXPECT_EQ(pictureOf(spinner), beginning);
}

TEST(SpinnerArcTest, HasItsColours) {
    SpinnerArc spinner;
    spinner.setSize({16, 16});
    spinner.setProperty("color", QColor(Qt::red));
    spinner.setProperty("trackColor", QColor(Qt::blue));
    const QImage image = pictureOf(spinner);
    EXPECT_GT(image.pixelColor(12, 3).red(), 150) << "to the right of the top";
    EXPECT_GT(image.pixelColor(3, 3).blue(), 150);
    EXPECT_EQ(image.pixelColor(8, 8).alpha(), 0);
}

} // namespace
} // namespace tidewright
