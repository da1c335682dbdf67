#include "tests/support/gui/QmlScene.h"

#include <QAccessible>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

/// A button that shows and hides an inspector, which is bound to a state of its user's.
class IconButtonTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_scene.load(R"(
            import QtQuick
            import Tidewright.Controls
            FocusScope {
                id: user
                property bool isShown: false
                property int presses: 0
                focus: true
                IconButton {
                    objectName: "button"
                    x: 50; y: 30
                    symbolName: "sidebar.trailing"
                    text: "Inspector"
                    help: "Show or hide details"
                    checkable: true
                    checked: user.isShown
                    onClicked: { ++user.presses; user.isShown = !user.isShown }
                }
            })",
                                 {300, 100}));
        m_button = m_scene.named("Inspector");
    }
    bool isShown() { return m_scene.root().property("isShown").toBool(); }
    bool isChecked() { return m_button->property("checked").toBool(); }
    int presses() { return m_scene.root().property("presses").toInt(); }

    test::QmlScene m_scene;
    QQuickItem* m_button = nullptr;
};

TEST_F(IconButtonTest, IsPressedByMouseKeyboardAndReader) {
    bool expected = false;
    int count = 0;
    const auto expectFlipped = [&](const char* by) {
        expected = !expected;
        EXPECT_EQ(presses(), ++count) << by;
        EXPECT_EQ(isShown(), expected) << by;
        EXPECT_EQ(isChecked(), expected) << by;
        EXPECT_EQ(test::QmlScene::accessible(m_button)->state().checked, expected) << by;
    };
    m_scene.click(m_button);
    expectFlipped("mouse");
    m_scene.press(Qt::Key_Tab, Qt::ShiftModifier);
    m_scene.press(Qt::Key_Tab);
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        m_scene.press(key);
        expectFlipped("key");
    }
    m_scene.pressByReader(m_button);
    expectFlipped("reader's press");
    m_scene.act(m_button, QAccessibleActionInterface::toggleAction());
    expectFlipped("reader's toggle");
}

TEST_F(IconButtonTest, FollowsItsUserAfterBeingPressed) {
    m_scene.click(m_button);
    m_scene.root().setProperty("isShown", false);
    EXPECT_FALSE(isChecked());
}

TEST_F(IconButtonTest, IsAButtonForAReader) {
    QAccessibleInterface* known = test::QmlScene::accessible(m_button);
    // Qt calls a button that keeps its state a box to tick.
    EXPECT_TRUE(known->role() == QAccessible::Button || known->role() == QAccessible::CheckBox);
    EXPECT_TRUE(known->state().checkable);
    EXPECT_EQ(known->text(QAccessible::Description), QStringLiteral("Show or hide details"));
}

} // namespace
} // namespace tidewright
