#include "tests/support/gui/QmlScene.h"

#include <QAccessible>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

/// What holds for a box to tick and for a switch: both ask, and follow what they are bound to.
class TickBoxTest : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_scene.load(R"(
            import QtQuick
            import Tidewright.Controls
            FocusScope {
                id: user
                property bool isOn: false
                property bool grants: true
                property string asked: ""
                focus: true
                )" + QByteArray(GetParam()) +
                                     R"( {
                    objectName: "box"
                    x: 50; y: 30
                    text: "Clean NDK"
                    checked: user.isOn
                    onAsked: on => {
                        user.asked += on ? "+" : "-"
                        if (user.grants)
                            user.isOn = on
                    }
                }
            })",
                                 {300, 100}));
        m_box = m_scene.named("Clean NDK");
    }
    bool isChecked() { return m_box->property("checked").toBool(); }
    std::string asked() { return m_scene.root().property("asked").toString().toStdString(); }

    test::QmlScene m_scene;
    QQuickItem* m_box = nullptr;
};

TEST_P(TickBoxTest, AsksByMouseKeyboardAndReader) {
    m_scene.click(m_box);
    EXPECT_EQ(asked(), "+");
    EXPECT_TRUE(isChecked());
    m_scene.press(Qt::Key_Tab, Qt::ShiftModifier);
    m_scene.press(Qt::Key_Tab);
    ASSERT_TRUE(m_box->hasActiveFocus());
    m_scene.press(Qt::Key_Space);
    EXPECT_EQ(asked(), "+-");
    EXPECT_FALSE(isChecked());
    m_scene.pressByReader(m_box);
    EXPECT_EQ(asked(), "+-+");
    EXPECT_TRUE(isChecked());
    EXPECT_TRUE(test::QmlScene::accessible(m_box)->state().checked);
    m_scene.act(m_box, QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(asked(), "+-+-");
    EXPECT_FALSE(isChecked());
    EXPECT_FALSE(test::QmlScene::accessible(m_box)->state().checked);
}

TEST_P(TickBoxTest, StaysAsItIsWhereItsUserDoesNotFollow) {
    m_scene.root().setProperty("grants", false);
    for (int press = 0; press < 3; ++press) {
        m_scene.click(m_box);
        m_scene.pressByReader(m_box);
        m_scene.press(Qt::Key_Space);
        EXPECT_FALSE(isChecked());
    }
    EXPECT_EQ(asked(), "+++++++++");
    m_scene.root().setProperty("isOn", true);
    EXPECT_TRUE(isChecked()) << "it is still bound";
    m_scene.click(m_box);
    EXPECT_EQ(asked(), "+++++++++-");
    EXPECT_TRUE(isChecked());
}

TEST_P(TickBoxTest, AsksNothingWhereItIsDisabled) {
    m_box->setProperty("enabled", false);
    m_scene.click(m_box);
    m_scene.pressByReader(m_box);
    EXPECT_EQ(asked(), "");
}

TEST_P(TickBoxTest, IsACheckBoxForAReader) {
    QAccessibleInterface* known = test::QmlScene::accessible(m_box);
    EXPECT_EQ(known->role(), QAccessible::CheckBox);
    EXPECT_TRUE(known->state().checkable);
    EXPECT_TRUE(known->state().focusable);
    EXPECT_EQ(known->childCount(), 0);
}

TEST_P(TickBoxTest, LooksDifferentWhenItIsOn) {
    const QImage off = m_scene.picture(m_box);
    m_scene.root().setProperty("isOn", true);
    EXPECT_TRUE(test::QmlScene::wait([&] { return m_scene.picture(m_box) != off; }));
}

INSTANTIATE_TEST_SUITE_P(Both,
                         TickBoxTest,
                         testing::Values("TickBox", "Toggle"),
                         [](const auto& control) { return std::string(control.param); });

} // namespace
} // namespace tidewright
