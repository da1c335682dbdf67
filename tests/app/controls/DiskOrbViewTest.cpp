#include "tests/support/gui/QmlScene.h"

#include <QAccessible>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

TEST(DiskOrbViewTest, IsOneElementForAReader) {
    test::QmlScene scene;
    ASSERT_TRUE(scene.load(R"(
        import Tidewright.Controls
        DiskOrbView { usedFraction: 0.74; health: "good"; label: "Disk 74 percent full, Healthy" })"));
    QAccessibleInterface* orb =
        test::QmlScene::accessible(scene.named("Disk 74 percent full, Healthy"));
    ASSERT_NE(orb, nullptr);
    EXPECT_EQ(orb->role(), QAccessible::Graphic);
    EXPECT_EQ(orb->childCount(), 0);
    EXPECT_EQ(scene.window().size(), QSize(210, 210));
}

TEST(DiskOrbViewTest, FollowsTheTheme) {
    test::QmlScene scene;
    ASSERT_TRUE(scene.load("import Tidewright.Controls; DiskOrbView { usedFraction: 0.5 }"));
    EXPECT_TRUE(test::QmlScene::wait([&] { return scene.root().property("running").toBool(); }));
    EXPECT_FALSE(scene.root().property("isDark").toBool());
    scene.theme().setSystemLook({true, {}, true});
    EXPECT_TRUE(scene.root().property("isDark").toBool());
    EXPECT_FALSE(scene.root().property("running").toBool());
}

} // namespace
} // namespace tidewright
