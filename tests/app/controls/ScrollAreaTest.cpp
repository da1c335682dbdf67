#include "tests/support/gui/QmlScene.h"

#include <QGuiApplication>
#include <QStyleHints>
#include <QTest>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

/// A page of 1000 in a window of 200 by 300, with a strip of 800 in it that scrolls sideways.
class ScrollAreaTest : public testing::Test {
protected:
    void SetUp() override {
        m_scene.theme().setSystemLook({false, {}, true});
        ASSERT_TRUE(m_scene.load(R"(
            import QtQuick
            import Tidewright.Controls
            FocusScope {
                focus: true
                ScrollArea {
                    objectName: "area"
                    anchors.fill: parent
                    contentHeight: 1000
                    focus: true
                    ScrollArea {
                        objectName: "strip"
                        y: 100; width: 200; height: 100
                        contentWidth: 800; contentHeight: height
                        PushButton { objectName: "aside"; text: "Aside"; x: 600; y: 20 }
                    }
                    PushButton { objectName: "near"; text: "Near"; x: 10; y: 10 }
                    PushButton { objectName: "far"; text: "Far"; x: 10; y: 800 }
                }
            })",
                                 {200, 300}));
        m_area = m_scene.item("area");
        m_strip = m_scene.item("strip");
    }
    double y() { return m_area->property("contentY").toDouble(); }
    double x() { return m_strip->property("contentX").toDouble(); }
    void wheel(QPoint point, QPoint angle, QPoint pixels = {}) {
        QWheelEvent event(point, m_scene.window().mapToGlobal(point), pixels, angle, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&m_scene.window(), &event);
        test::QmlScene::settle();
    }

    test::QmlScene m_scene;
    QQuickItem* m_area = nullptr;
    QQuickItem* m_strip = nullptr;
};

TEST_F(ScrollAreaTest, WheelTurnsByWhatTheSystemSays) {
    wheel({50, 250}, {0, -120});
    const double notch = 22.0 * QGuiApplication::styleHints()->wheelScrollLines();
    EXPECT_EQ(y(), notch);
    wheel({50, 250}, {0, -240});
    EXPECT_EQ(y(), 3 * notch);
    wheel({50, 250}, {0, 120});
    EXPECT_EQ(y(), 2 * notch);
}

TEST_F(ScrollAreaTest, TouchpadMovesByItsPixels) {
    wheel({50, 250}, {0, -8}, {0, -13});
    EXPECT_EQ(y(), 13);
    wheel({50, 250}, {0, -40});
    EXPECT_NEAR(y(), 13 + 22.0 * QGuiApplication::styleHints()->wheelScrollLines() / 3, 0.01);
}

TEST_F(ScrollAreaTest, StopsAtItsEnds) {
    wheel({50, 250}, {0, 1200});
    EXPECT_EQ(y(), 0);
    wheel({50, 250}, {0, -12000});
    EXPECT_EQ(y(), 700);
    wheel({50, 250}, {0, -120});
    EXPECT_EQ(y(), 700);
}

TEST_F(ScrollAreaTest, AStripLeavesToThePageWhatIsNotItsOwn) {
    wheel({50, 150}, {0, -120});
    EXPECT_GT(y(), 0);
    EXPECT_EQ(x(), 0);
    const double before = y();
    wheel({50, 110}, {-120, 0});
    EXPECT_GT(x(), 0);
    EXPECT_EQ(y(), before);
}

TEST_F(ScrollAreaTest, IsNotDraggedByTheMouse) {
    QTest::mousePress(&m_scene.window(), Qt::LeftButton, {}, {100, 280});
    for (int step = 1; step < 10; ++step)
        QTest::mouseMove(&m_scene.window(), {100, 280 - 20 * step});
    QTest::mouseRelease(&m_scene.window(), Qt::LeftButton, {}, {100, 100});
    test::QmlScene::settle();
    EXPECT_EQ(y(), 0);
}

TEST_F(ScrollAreaTest, KeysMoveIt) {
    const std::pair<Qt::Key, double> steps[] = {
        {Qt::Key_PageDown, 260}, {Qt::Key_Down, 308},     {Qt::Key_Up, 260}, {Qt::Key_PageUp, 0},
        {Qt::Key_End, 700},      {Qt::Key_PageDown, 700}, {Qt::Key_Home, 0},
    };
    for (const auto& [key, expected] : steps) {
        m_scene.press(key);
        EXPECT_EQ(y(), expected) << key;
    }
}

TEST_F(ScrollAreaTest, FollowsTheFocus) {
    m_scene.item("far")->forceActiveFocus(Qt::TabFocusReason);
    test::QmlScene::settle();
    EXPECT_EQ(y(), 800 + 30 + 20 - 300);
    m_scene.item("near")->forceActiveFocus(Qt::TabFocusReason);
    test::QmlScene::settle();
    EXPECT_EQ(y(), 0);
    m_scene.item("aside")->forceActiveFocus(Qt::TabFocusReason);
    test::QmlScene::settle();
    EXPECT_EQ(x(), 600 + m_scene.item("aside")->width() + 20 - 200);
}

TEST_F(ScrollAreaTest, BarIsSeenWhileItMoves) {
    const auto isBarSeen = [&] {
        return m_scene.picture().pixelColor(194, 30) != m_scene.theme().window();
    };
    EXPECT_FALSE(isBarSeen());
    wheel({50, 250}, {0, -12});
    EXPECT_TRUE(test::QmlScene::wait(isBarSeen));
    EXPECT_TRUE(test::QmlScene::wait([&] { return !isBarSeen(); }));
}

TEST_F(ScrollAreaTest, BarCanBeDragged) {
    m_scene.moveTo(m_area);
    QTest::mousePress(&m_scene.window(), Qt::LeftButton, {}, {194, 20});
    QTest::mouseMove(&m_scene.window(), {194, 60});
    QTest::mouseMove(&m_scene.window(), {194, 110});
    QTest::mouseRelease(&m_scene.window(), Qt::LeftButton, {}, {194, 110});
    test::QmlScene::settle();
    EXPECT_GT(y(), 200);
}

TEST(ScrollAreaMotionTest, GlidesAndAddsUpItsSteps) {
    test::QmlScene scene;
    scene.theme().setSystemLook({false, {}, false});
    ASSERT_TRUE(
        scene.load("import QtQuick; import Tidewright.Controls; ScrollArea { contentHeight: 1000 }",
                   {200, 300}));
    auto* area = qobject_cast<QQuickItem*>(&scene.root());
    for (int step = 0; step < 3; ++step)
        scene.scroll(area, -1);
    const double goal = 3 * 22.0 * QGuiApplication::styleHints()->wheelScrollLines();
    EXPECT_LT(area->property("contentY").toDouble(), goal);
    EXPECT_TRUE(
        test::QmlScene::wait([&] { return area->property("contentY").toDouble() == goal; }));
}

} // namespace
} // namespace tidewright
