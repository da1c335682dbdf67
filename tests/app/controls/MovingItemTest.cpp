#include "app/controls/MovingItem.h"

#include "app/controls/SpinnerArc.h"
#include "tests/support/gui/QmlScene.h"

#include <gtest/gtest.h>

namespace tidewright {
namespace {

/// A spinner in a window of 200 by 200, in an area that clips and can be scrolled.
class MovingItemTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_scene.load(R"(
            import QtQuick
            import Tidewright.Controls
            Item {
                Flickable {
                    objectName: "area"
                    y: 100; width: 100; height: 100; contentHeight: 1000; clip: true
                    SpinnerArc { objectName: "spinner"; width: 16; height: 16; y: 20 }
                }
            })",
                                 {200, 200}));
        m_spinner = qobject_cast<SpinnerArc*>(m_scene.item("spinner"));
        ASSERT_NE(m_spinner, nullptr);
        QObject::connect(&m_scene.window(), &QQuickWindow::frameSwapped, &m_scene.window(),
                         [this] { ++m_frames; });
    }

    bool startsToMove() {
        return test::QmlScene::wait([&] { return m_spinner->isMoving(); });
    }
    bool comesToRest() {
        return test::QmlScene::wait([&] { return !m_spinner->isMoving(); });
    }
    /// How many frames are drawn within the time of some twelve, after those that were due.
    int framesMeanwhile() {
        (void)test::QmlScene::wait([] { return false; }, 100);
        m_frames = 0;
        (void)test::QmlScene::wait([] { return false; }, 200);
        return m_frames;
    }

    test::QmlScene m_scene;
    SpinnerArc* m_spinner = nullptr;
    int m_frames = 0;
};

TEST_F(MovingItemTest, IsDrawnAnewWhileItIsSeen) {
    ASSERT_TRUE(startsToMove());
    EXPECT_GT(framesMeanwhile(), 2);
}

TEST_F(MovingItemTest, DrawsNoFrameInAHiddenWindow) {
    ASSERT_TRUE(startsToMove());
    m_scene.window().hide();
    EXPECT_TRUE(comesToRest());
    EXPECT_EQ(framesMeanwhile(), 0);
    m_scene.window().show();
    EXPECT_TRUE(startsToMove());
}

TEST_F(MovingItemTest, DrawsNoFrameInAMinimisedWindow) {
    ASSERT_TRUE(startsToMove());
    m_scene.window().showMinimized();
    EXPECT_TRUE(comesToRest());
    EXPECT_EQ(framesMeanwhile(), 0);
    m_scene.window().showNormal();
    EXPECT_TRUE(startsToMove());
}

TEST_F(MovingItemTest, DrawsNoFrameWhereItIsScrolledOutOfSight) {
    ASSERT_TRUE(startsToMove());
    QQuickItem* area = m_scene.item("area");
    area->setProperty("contentY", 50); // above the area, and still in the window
    EXPECT_TRUE(comesToRest());
    EXPECT_EQ(framesMeanwhile(), 0);
    area->setProperty("contentY", 30); // a part of it is seen
    EXPECT_TRUE(startsToMove());
    area->setX(300); // out of the window
    EXPECT_TRUE(comesToRest());
    EXPECT_EQ(framesMeanwhile(), 0);
}

TEST_F(MovingItemTest, DrawsNoFrameWhereItIsHiddenOrClear) {
    ASSERT_TRUE(startsToMove());
    for (const char* const property : {"visible", "opacity"}) {
        m_scene.item("area")->setProperty(property, 0);
        EXPECT_TRUE(comesToRest()) << property;
        EXPECT_EQ(framesMeanwhile(), 0) << property;
        m_spinner->parentItem()->parentItem()->setProperty(property, 1);
        EXPECT_TRUE(startsToMove()) << property;
    }
}

TEST_F(MovingItemTest, DrawsNoFrameWhereMotionIsReduced) {
    ASSERT_TRUE(startsToMove());
    m_spinner->setReduceMotion(true);
    EXPECT_FALSE(m_spinner->isMoving());
    EXPECT_EQ(framesMeanwhile(), 0);
    m_spinner->setReduceMotion(false);
    EXPECT_TRUE(startsToMove());
}

TEST_F(MovingItemTest, DrawsNoFrameWhereNothingIsUnderWay) {
    ASSERT_TRUE(startsToMove());
    m_spinner->setProperty("running", false);
    EXPECT_FALSE(m_spinner->isMoving());
    EXPECT_EQ(framesMeanwhile(), 0);
    m_spinner->setProperty("running", true);
    EXPECT_TRUE(m_spinner->isMoving());
}

TEST_F(MovingItemTest, CanGoToAnotherWindow) {
    ASSERT_TRUE(startsToMove());
    QQuickWindow other;
    other.resize(50, 50);
    m_spinner->setParentItem(other.contentItem());
    EXPECT_FALSE(m_spinner->isMoving()) << "it is not shown yet";
    other.show();
    EXPECT_TRUE(startsToMove());
    m_spinner->setParentItem(nullptr);
    EXPECT_FALSE(m_spinner->isMoving());
}

} // namespace
} // namespace tidewright
