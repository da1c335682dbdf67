#include "tests/support/gui/QmlScene.h"

#include <QAccessible>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

TEST(CapacityBarTest, IsAGraphicWithItsWords) {
    test::QmlScene scene;
    ASSERT_TRUE(scene.load(
        "import Tidewright.Controls; CapacityBar { usedFraction: 0.5; label: '1 of 2 GB' }"));
    EXPECT_EQ(test::QmlScene::accessible(scene.named("1 of 2 GB"))->role(), QAccessible::Graphic);
    EXPECT_EQ(qobject_cast<QQuickItem*>(&scene.root())->height(), 18);
}

TEST(CapacityBarTest, SpringsToItsFraction) {
    test::QmlScene scene;
    scene.theme().setSystemLook({false, {}, false});
    ASSERT_TRUE(scene.load(R"(
        import Tidewright.Controls
        CapacityBar { property real goal: 0.2; usedFraction: goal; freeableFraction: goal / 2 })"));
    EXPECT_EQ(scene.root().property("usedFraction").toDouble(), 0.2) << "at the start, at once";
    scene.root().setProperty("goal", 0.8);
    test::QmlScene::settle();
    EXPECT_LT(scene.root().property("usedFraction").toDouble(), 0.8);
    EXPECT_TRUE(test::QmlScene::wait([&] {
        return scene.root().property("usedFraction").toDouble() == 0.8 &&
               scene.root().property("freeableFraction").toDouble() == 0.4;
    }));
    scene.theme().setSystemLook({false, {}, true});
    scene.root().setProperty("goal", 0.1);
    EXPECT_TRUE(test::QmlScene::wait(
        [&] { return scene.root().property("usedFraction").toDouble() == 0.1; }));
}

} // namespace
} // namespace tidewright
