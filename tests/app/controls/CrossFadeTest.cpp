#include "tests/support/gui/QmlScene.h"

#include <gtest/gtest.h>

namespace tidewright {
namespace {

class CrossFadeTest : public testing::Test {
protected:
    void load(bool reduceMotion) {
        m_scene.theme().setSystemLook({false, {}, reduceMotion});
        ASSERT_TRUE(m_scene.load(R"(
            import QtQuick
            import Tidewright.Controls
            Item {
                id: user
                property int which: 0
                property string key: ""
                property int alive: 0
                property int made: 0
                component Page: Rectangle {
                    Component.onCompleted: { ++user.alive; ++user.made }
                    Component.onDestruction: --user.alive
                }
                CrossFade {
                    objectName: "fade"
                    anchors.fill: parent
                    key: user.key
                    sourceComponent: user.which === 0 ? red : user.which === 1 ? blue : null
                    Component { id: red; Page { objectName: "red"; color: "#ff0000" } }
                    Component { id: blue; Page { objectName: "blue"; color: "#0000ff" } }
                }
            })",
                                 {100, 100}));
    }
    void change(const char* name, const QVariant& value) {
        m_scene.root().setProperty(name, value);
        test::QmlScene::settle();
    }
    int number(const char* name) { return m_scene.root().property(name).toInt(); }
    QColor shown() { return m_scene.picture().pixelColor(50, 50); }
    bool settlesTo(int alive) {
        return test::QmlScene::wait([&] { return number("alive") == alive; });
    }

    test::QmlScene m_scene;
};

TEST_F(CrossFadeTest, BeginsWithOneAtOnce) {
    load(false);
    EXPECT_EQ(number("made"), 1);
    EXPECT_EQ(shown(), QColor(Qt::red));
    EXPECT_EQ(m_scene.item("fade")->property("item").value<QQuickItem*>(), m_scene.item("red"));
    EXPECT_EQ(m_scene.item("red")->size(), QSizeF(100, 100));
}

TEST_F(CrossFadeTest, FadesFromOneToTheOtherAndDestroysTheFormer) {
    load(false);
    change("which", 1);
    EXPECT_EQ(number("alive"), 2);
    EXPECT_FALSE(m_scene.item("red")->isEnabled());
    EXPECT_TRUE(test::QmlScene::wait([&] {
        const QColor color = shown();
        return color.red() > 30 && color.blue() > 30;
    })) << "both can be seen";
    EXPECT_TRUE(settlesTo(1));
    EXPECT_EQ(shown(), QColor(Qt::blue));
    EXPECT_FALSE(m_scene.hasItem("red"));
}

TEST_F(CrossFadeTest, ChangesInTheMiddleOfAFadeLeaveOne) {
    load(false);
    for (const int which : {1, 0, 1, 0, 0, 1}) {
        change("which", which);
        EXPECT_LE(number("alive"), 2);
    }
    EXPECT_TRUE(settlesTo(1));
    EXPECT_TRUE(test::QmlScene::wait([&] { return shown() == QColor(Qt::blue); }));
    EXPECT_EQ(m_scene.item("fade")->property("item").value<QQuickItem*>(), m_scene.item("blue"));
}

TEST_F(CrossFadeTest, AnotherKeyMakesTheSameAnew) {
    load(false);
    change("key", QStringLiteral("android"));
    EXPECT_EQ(number("made"), 2);
    EXPECT_TRUE(settlesTo(1));
    EXPECT_EQ(shown(), QColor(Qt::red));
}

TEST_F(CrossFadeTest, BothChangesTogetherAreOne) {
    load(false);
    m_scene.root().setProperty("key", QStringLiteral("android"));
    change("which", 1);
    EXPECT_EQ(number("made"), 2);
    EXPECT_TRUE(settlesTo(1));
}

TEST_F(CrossFadeTest, ChangesAtOnceWhereMotionIsReduced) {
    load(true);
    change("which", 1);
    EXPECT_EQ(shown(), QColor(Qt::blue));
    EXPECT_TRUE(settlesTo(1));
    change("which", 0);
    EXPECT_EQ(shown(), QColor(Qt::red));
    EXPECT_TRUE(settlesTo(1));
}

TEST_F(CrossFadeTest, MayShowNothing) {
    load(false);
    change("which", 2);
    EXPECT_TRUE(settlesTo(0));
    change("which", 1);
    EXPECT_TRUE(test::QmlScene::wait([&] { return shown() == QColor(Qt::blue); }));
    EXPECT_EQ(number("alive"), 1);
}

TEST_F(CrossFadeTest, DrawsNothingAfterwards) {
    load(false);
    change("which", 1);
    ASSERT_TRUE(settlesTo(1));
    ASSERT_TRUE(test::QmlScene::wait([&] { return shown() == QColor(Qt::blue); }));
    int frames = 0;
    QObject::connect(&m_scene.window(), &QQuickWindow::frameSwapped, &m_scene.window(),
                     [&] { ++frames; });
    (void)test::QmlScene::wait([] { return false; }, 100);
    frames = 0;
    (void)test::QmlScene::wait([] { return false; }, 200);
    EXPECT_EQ(frames, 0);
}

} // namespace
} // namespace tidewright
