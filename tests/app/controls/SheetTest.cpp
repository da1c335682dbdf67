#include "tests/support/gui/QmlScene.h"

#include <QAccessible>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

class SheetTest : public testing::Test {
protected:
    void load(bool reduceMotion = true) {
        m_scene.theme().setSystemLook({false, {}, reduceMotion});
        ASSERT_TRUE(m_scene.load(R"(
            import QtQuick
            import Tidewright.Controls
            FocusScope {
                id: user
                property bool isOpen: false
                property bool mayLeave: true
                property int dismissals: 0
                property int behind: 0
                focus: true
                PushButton {
                    objectName: "behind"; text: "Behind"; x: 10; y: 10
                    onClicked: ++user.behind
                }
                Sheet {
                    title: "Review cleanup"
                    visible: user.isOpen
                    dismissible: user.mayLeave
                    onDismissed: { ++user.dismissals; user.isOpen = false }
                    Column {
                        objectName: "content"
                        anchors.fill: parent
                        PushButton { objectName: "first"; text: "Cancel" }
                        PushButton { objectName: "second"; text: "Clean" }
                    }
                }
            })",
                                 {900, 640}));
    }
    void open() {
        m_scene.root().setProperty("isOpen", true);
        ASSERT_TRUE(test::QmlScene::wait([&] { return m_scene.hasItem("content"); }));
        test::QmlScene::settle();
    }
    bool isGone() {
        return test::QmlScene::wait([&] { return !m_scene.hasItem("content"); });
    }
    int number(const char* name) { return m_scene.root().property(name).toInt(); }

    test::QmlScene m_scene;
};

TEST_F(SheetTest, StandsInTheMiddleOfTheWindow) {
    load();
    open();
    const QRectF place =
        m_scene.item("content")->mapRectToScene(m_scene.item("content")->boundingRect());
    EXPECT_EQ(place, QRectF(140, 20, 620, 600));
}

TEST_F(SheetTest, CoversTheWindowWithItsScrim) {
    load();
    const QColor before = m_scene.picture().pixelColor(60, 600);
    open();
    EXPECT_LT(m_scene.picture().pixelColor(60, 600).lightness(), before.lightness());
    EXPECT_EQ(m_scene.picture().pixelColor(450, 400), m_scene.theme().window());
    m_scene.click(m_scene.item("behind"));
    test::QmlScene::settle();
    EXPECT_EQ(number("behind"), 0) << "what is behind it can't be reached";
}

TEST_F(SheetTest, IsLeftByEscapeAndByAClickBesideIt) {
    load();
    open();
    m_scene.press(Qt::Key_Escape);
    EXPECT_TRUE(isGone());
    EXPECT_EQ(number("dismissals"), 1);
    open();
    m_scene.clickAt({450, 400});
    EXPECT_EQ(number("dismissals"), 1) << "a click into it";
    m_scene.clickAt({60, 600});
    EXPECT_TRUE(isGone());
    EXPECT_EQ(number("dismissals"), 2);
    EXPECT_EQ(number("isOpen"), 0);
}

TEST_F(SheetTest, StaysWhereItMayNotBeLeft) {
    load();
    m_scene.root().setProperty("mayLeave", false);
    open();
    m_scene.press(Qt::Key_Escape);
    m_scene.clickAt({60, 600});
    test::QmlScene::settle();
    EXPECT_TRUE(m_scene.hasItem("content"));
    EXPECT_EQ(number("dismissals"), 0);
    m_scene.root().setProperty("isOpen", false);
    EXPECT_TRUE(isGone());
    EXPECT_EQ(number("dismissals"), 0) << "it was not the user who left it";
}

TEST_F(SheetTest, KeepsTheFocusAndGivesItBack) {
    load();
    m_scene.press(Qt::Key_Tab);
    ASSERT_TRUE(m_scene.item("behind")->hasActiveFocus());
    open();
    EXPECT_FALSE(m_scene.item("behind")->hasActiveFocus());
    for (int step = 0; step < 5; ++step) {
        m_scene.press(Qt::Key_Tab);
        EXPECT_TRUE(m_scene.item(step % 2 == 0 ? "first" : "second")->hasActiveFocus()) << step;
    }
    m_scene.press(Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_TRUE(m_scene.item("second")->hasActiveFocus());
    m_scene.press(Qt::Key_Escape);
    EXPECT_TRUE(isGone());
    EXPECT_TRUE(m_scene.item("behind")->hasActiveFocus());
}

TEST_F(SheetTest, IsADialogForAReader) {
    load();
    open();
    QAccessibleInterface* known = test::QmlScene::accessible(m_scene.named("Review cleanup"));
    ASSERT_NE(known, nullptr);
    EXPECT_EQ(known->role(), QAccessible::Dialog);
}

TEST_F(SheetTest, RisesWhileItFadesIn) {
    load(false);
    m_scene.root().setProperty("isOpen", true);
    ASSERT_TRUE(m_scene.hasItem("content"));
    QQuickItem* content = m_scene.item("content");
    EXPECT_NEAR(content->mapToScene({0, 0}).y(), 32, 2);
    EXPECT_TRUE(test::QmlScene::wait([&] { return content->mapToScene({0, 0}).y() == 20; }));
}

TEST_F(SheetTest, FitsIntoASmallWindow) {
    load();
    m_scene.window().resize(500, 400);
    qobject_cast<QQuickItem*>(&m_scene.root())->setSize({500, 400});
    open();
    EXPECT_TRUE(test::QmlScene::wait([&] {
        QQuickItem* content = m_scene.item("content");
        return content->mapRectToScene(content->boundingRect()) == QRectF(0, 0, 500, 400);
    }));
}

} // namespace
} // namespace tidewright
