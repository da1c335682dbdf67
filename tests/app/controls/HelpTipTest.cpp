#include "tests/support/gui/QmlScene.h"

#include <QTest>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

/// The ground of the tip that is shown, if one is.
QQuickItem* tipIn(const test::QmlScene& scene) {
    for (QQuickItem* item : scene.shownItems())
        if (item->property("text").toString().startsWith(QStringLiteral("Review everything")) &&
            item->parentItem() != nullptr)
            return item->parentItem();
    return nullptr;
}

class HelpTipTest : public testing::TestWithParam<QPoint> {};

TEST_P(HelpTipTest, IsShownAfterAWhileAndInsideTheWindow) {
    test::QmlScene scene;
    ASSERT_TRUE(scene.load(R"(
        import QtQuick
        import Tidewright.Controls
        Item {
            property point place
            PushButton {
                objectName: "button"
                x: parent.place.x; y: parent.place.y
                text: "Go"
                help: "Review everything selected before anything is cleaned"
            }
        })",
                           {400, 200}, {{QStringLiteral("place"), GetParam()}}));
    QTest::mouseMove(&scene.window(), QPoint(200, 100));
    EXPECT_EQ(tipIn(scene), nullptr);
    QQuickItem* button = scene.item("button");
    scene.moveTo(button);
    EXPECT_EQ(tipIn(scene), nullptr) << "not at once";
    ASSERT_TRUE(test::QmlScene::wait([&] { return tipIn(scene) != nullptr; }));
    test::QmlScene::settle();
    QQuickItem* tip = tipIn(scene);
    const QRectF place = tip->mapRectToScene(QRectF({}, tip->size()));
    EXPECT_TRUE(QRectF(0, 0, 400, 200).contains(place));
    EXPECT_FALSE(place.intersects(button->mapRectToScene(QRectF({}, button->size()))));

    QTest::mouseMove(&scene.window(), QPoint(200, 100));
    EXPECT_TRUE(test::QmlScene::wait([&] { return tipIn(scene) == nullptr; }));
}

INSTANTIATE_TEST_SUITE_P(
    Corners,
    HelpTipTest,
    testing::Values(QPoint(5, 5), QPoint(350, 5), QPoint(5, 165), QPoint(350, 165)));

} // namespace
} // namespace tidewright
