#include "tests/support/gui/QmlScene.h"

#include <QAccessible>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

class ContextMenuTest : public testing::Test {
protected:
    void SetUp() override {
        m_scene.theme().setSystemLook({false, {}, true});
        ASSERT_TRUE(m_scene.load(R"(
            import QtQuick
            import Tidewright.Controls
            FocusScope {
                id: user
                property string chosen: ""
                property bool isOpen: menu.visible
                focus: true
                function open(x, y) { menu.popup(user, x, y) }
                ContextMenu {
                    id: menu
                    objectName: "menu"
                    MenuEntry { text: "Reveal in Finder"; symbolName: "folder"; onTriggered: user.chosen += "r" }
                    MenuEntry { text: "Not now"; enabled: false; onTriggered: user.chosen += "n" }
                    MenuEntry { text: "Select for Cleaning and much more than fits into it"; onTriggered: user.chosen += "s" }
                }
            })",
                                 {500, 300}));
    }
    void open(double x = 20, double y = 20) {
        QMetaObject::invokeMethod(&m_scene.root(), "open", Q_ARG(QVariant, x), Q_ARG(QVariant, y));
        ASSERT_TRUE(test::QmlScene::wait([&] { return m_scene.hasNamed("Reveal in Finder"); }));
        test::QmlScene::settle();
    }
    bool isOpen() { return m_scene.root().property("isOpen").toBool(); }
    std::string chosen() { return m_scene.root().property("chosen").toString().toStdString(); }

    test::QmlScene m_scene;
};

TEST_F(ContextMenuTest, IsChosenFromByTheMouse) {
    open();
    m_scene.click(m_scene.named("Reveal in Finder"));
    EXPECT_EQ(chosen(), "r");
    EXPECT_FALSE(isOpen());
}

TEST_F(ContextMenuTest, IsChosenFromByTheKeyboard) {
    open();
    m_scene.press(Qt::Key_Down);
    m_scene.press(Qt::Key_Down);
    m_scene.press(Qt::Key_Return);
    EXPECT_EQ(chosen(), "s") << "what is disabled is passed over";
    EXPECT_FALSE(isOpen());
}

TEST_F(ContextMenuTest, IsChosenFromByAReader) {
    open();
    QAccessibleInterface* known = test::QmlScene::accessible(m_scene.named("Reveal in Finder"));
    EXPECT_EQ(known->role(), QAccessible::MenuItem);
    m_scene.pressByReader(m_scene.named("Reveal in Finder"));
    EXPECT_EQ(chosen(), "r");
    EXPECT_FALSE(isOpen());
}

TEST_F(ContextMenuTest, WhatIsDisabledIsNotChosen) {
    open();
    m_scene.click(m_scene.named("Not now"));
    if (m_scene.hasNamed("Not now"))
        m_scene.pressByReader(m_scene.named("Not now"));
    EXPECT_EQ(chosen(), "");
}

TEST_F(ContextMenuTest, IsClosedByEscapeAndByAClickBesideIt) {
    open();
    m_scene.press(Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
    open();
    m_scene.clickAt({480, 280});
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(chosen(), "");
}

TEST_F(ContextMenuTest, StaysInsideTheWindow) {
    open(490, 290);
    for (const char* const name : {"Reveal in Finder", "Not now"}) {
        QQuickItem* entry = m_scene.named(name);
        const QRectF place = entry->mapRectToScene(QRectF({}, entry->size()));
        EXPECT_TRUE(QRectF(0, 0, 500, 300).contains(place)) << name;
    }
}

TEST_F(ContextMenuTest, IsAsWideAsItsWidestEntry) {
    open();
    QQuickItem* entry = m_scene.named("Select for Cleaning and much more than fits into it");
    EXPECT_GE(entry->width(), entry->implicitWidth());
    EXPECT_GT(entry->width(), 250);
    EXPECT_EQ(m_scene.named("Reveal in Finder")->width(), entry->width());
}

} // namespace
} // namespace tidewright
