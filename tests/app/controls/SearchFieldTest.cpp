#include "tests/support/gui/QmlScene.h"

#include <QAccessible>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

class SearchFieldTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_scene.load(R"(
            import QtQuick
            import Tidewright.Controls
            FocusScope {
                property int edits: 0
                property int escapes: 0
                focus: true
                Keys.onEscapePressed: ++escapes
                SearchField {
                    objectName: "field"
                    x: 20; y: 20
                    placeholder: "Filter items"
                    onTextEdited: ++parent.edits
                }
            })",
                                 {300, 100}));
        m_field = m_scene.item("field");
    }
    std::string text() { return m_field->property("text").toString().toStdString(); }
    int edits() { return m_scene.root().property("edits").toInt(); }

    test::QmlScene m_scene;
    QQuickItem* m_field = nullptr;
};

TEST_F(SearchFieldTest, TakesWords) {
    m_scene.click(m_field);
    m_scene.type("ndk");
    EXPECT_EQ(text(), "ndk");
    EXPECT_EQ(edits(), 3);
}

TEST_F(SearchFieldTest, EscapeEmptiesItAndThenIsForOthers) {
    m_scene.press(Qt::Key_Tab);
    m_scene.type("ndk");
    m_scene.press(Qt::Key_Escape);
    EXPECT_EQ(text(), "");
    EXPECT_EQ(edits(), 4);
    EXPECT_EQ(m_scene.root().property("escapes").toInt(), 0);
    m_scene.press(Qt::Key_Escape);
    EXPECT_EQ(m_scene.root().property("escapes").toInt(), 1);
    EXPECT_EQ(edits(), 4);
}

TEST_F(SearchFieldTest, AButtonEmptiesIt) {
    EXPECT_FALSE(m_scene.hasNamed("Clear")) << "there is nothing to clear";
    for (const bool byReader : {false, true}) {
        m_scene.click(m_field);
        m_scene.type("ndk");
        if (byReader)
            m_scene.pressByReader(m_scene.named("Clear"));
        else
            m_scene.click(m_scene.named("Clear"));
        EXPECT_EQ(text(), "");
        EXPECT_TRUE(m_field->hasActiveFocus());
        EXPECT_FALSE(m_scene.hasNamed("Clear"));
    }
    EXPECT_EQ(edits(), 8);
}

TEST_F(SearchFieldTest, IsATextForAReader) {
    QAccessibleInterface* known = test::QmlScene::accessible(m_scene.named("Filter items"));
    ASSERT_NE(known, nullptr);
    EXPECT_EQ(known->role(), QAccessible::EditableText);
    EXPECT_TRUE(known->state().focusable);
    m_scene.click(m_field);
    m_scene.type("ndk");
    EXPECT_TRUE(m_scene.hasNamed("Filter items")) << "its name is not its content";
}

TEST_F(SearchFieldTest, ShowsItsPlaceholderWhileItIsEmpty) {
    const QImage empty = m_scene.picture(m_field);
    m_field->setProperty("placeholder", QString());
    EXPECT_NE(m_scene.picture(m_field), empty);
}

} // namespace
} // namespace tidewright
