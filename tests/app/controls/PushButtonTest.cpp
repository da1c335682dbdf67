#include "tests/support/gui/QmlScene.h"

#include <QAccessible>
#include <QTest>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

class PushButtonTest : public testing::Test {
protected:
    /// In a window of 300 by 100; `how` goes into the button.
    void load(const QByteArray& how = {}) {
        ASSERT_TRUE(m_scene.load(R"(
            import QtQuick
            import Tidewright.Controls
            FocusScope {
                property int presses: 0
                focus: true
                PushButton {
                    objectName: "button"
                    x: 50; y: 30
                    text: "Scan Again"
                    onClicked: ++parent.presses
                    )" + how + R"(
                }
                PushButton { objectName: "other"; x: 200; y: 30; text: "Other" }
            })",
                                 {300, 100}));
    }
    QQuickItem* button() { return m_scene.item("button"); }
    int presses() { return m_scene.root().property("presses").toInt(); }

    test::QmlScene m_scene;
};

TEST_F(PushButtonTest, IsPressedByTheMouse) {
    load();
    m_scene.click(button());
    EXPECT_EQ(presses(), 1);
    m_scene.clickAt({45, 45});
    EXPECT_EQ(presses(), 1) << "beside it";
}

TEST_F(PushButtonTest, IsPressedByTheKeyboard) {
    load();
    m_scene.press(Qt::Key_Tab);
    ASSERT_TRUE(button()->hasActiveFocus());
    int expected = 0;
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        m_scene.press(key);
        EXPECT_EQ(presses(), ++expected) << key;
    }
    m_scene.press(Qt::Key_A);
    EXPECT_EQ(presses(), expected);
}

TEST_F(PushButtonTest, AKeyThatIsHeldPressesOnce) {
    load();
    m_scene.press(Qt::Key_Tab);
    QKeyEvent again(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
    QCoreApplication::sendEvent(&m_scene.window(), &again);
    EXPECT_EQ(presses(), 0);
}

TEST_F(PushButtonTest, IsPressedByAReader) {
    load("help: 'Reads the disk'; isDefault: true");
    QAccessibleInterface* known = test::QmlScene::accessible(m_scene.named("Scan Again"));
    ASSERT_NE(known, nullptr);
    EXPECT_EQ(known->role(), QAccessible::Button);
    EXPECT_EQ(known->text(QAccessible::Description), QStringLiteral("Reads the disk"));
    EXPECT_TRUE(known->state().defaultButton);
    EXPECT_TRUE(known->state().focusable);
    EXPECT_EQ(known->childCount(), 0) << "its words are said once";
    EXPECT_TRUE(m_scene.pressByReader(button()));
    EXPECT_EQ(presses(), 1);
}

TEST_F(PushButtonTest, DoesNothingWhereItIsDisabled) {
    load("enabled: false");
    m_scene.click(button());
    m_scene.press(Qt::Key_Tab);
    EXPECT_FALSE(button()->hasActiveFocus());
    m_scene.pressByReader(button());
    EXPECT_EQ(presses(), 0);
    EXPECT_LT(button()->opacity(), 1);
}

TEST_F(PushButtonTest, ExtentsHaveTheirHeights) {
    for (const auto& [extent, height] : {std::pair("small", 26), {"toolbar", 30}, {"large", 36}}) {
        test::QmlScene scene;
        ASSERT_TRUE(scene.load("import Tidewright.Controls; PushButton { text: 'Scan'; extent: '" +
                               QByteArray(extent) + "' }"));
        EXPECT_EQ(qobject_cast<QQuickItem*>(&scene.root())->height(), height) << extent;
    }
}

// --- Looks

TEST_F(PushButtonTest, HoverLightensAndPressDarkens) {
    for (const char* const kind : {"plain", "prominent", "destructive"})
        for (const bool isDark : {false, true}) {
            SCOPED_TRACE(std::string(kind) + (isDark ? " dark" : " light"));
            test::QmlScene scene;
            scene.theme().setSystemLook({isDark, {}, true});
            ASSERT_TRUE(scene.load(R"(
                import QtQuick
                import Tidewright.Controls
                Item { PushButton { objectName: "button"; text: "Scan"; x: 50; y: 50; kind: ")" +
                                       QByteArray(kind) + "\" } }",
                                   {200, 150}));
            QQuickItem* button = scene.item("button");
            const auto ground = [&] { return scene.picture(button).pixelColor(6, 15).lightness(); };
            const int still = ground();
            scene.moveTo(button);
            const int hovered = ground();
            EXPECT_GT(hovered, still);
            QTest::mousePress(&scene.window(), Qt::LeftButton, {},
                              button->mapToScene({20, 15}).toPoint());
            EXPECT_LT(ground(), still);
            QTest::mouseRelease(&scene.window(), Qt::LeftButton, {},
                                button->mapToScene({20, 15}).toPoint());
            EXPECT_EQ(ground(), hovered);
        }
}

TEST_F(PushButtonTest, RingIsSeenWithTheKeyboardAlone) {
    load();
    const auto ring = [&] {
        const QPoint beside = button()->mapToScene({button()->width() / 2, -3.5}).toPoint();
        return m_scene.picture().pixelColor(beside) == m_scene.theme().accent();
    };
    EXPECT_FALSE(ring());
    m_scene.click(button());
    EXPECT_TRUE(button()->hasActiveFocus());
    EXPECT_FALSE(ring());
    m_scene.press(Qt::Key_Tab);
    EXPECT_FALSE(ring());
    m_scene.press(Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_TRUE(button()->hasActiveFocus());
    EXPECT_TRUE(ring());
}

} // namespace
} // namespace tidewright
