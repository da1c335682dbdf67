#include "tests/support/gui/QmlScene.h"

#include <QAccessible>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

class SegmentedPickerTest : public testing::Test {
protected:
    void SetUp() override {
        m_scene.theme().setSystemLook({false, {}, true});
        ASSERT_TRUE(m_scene.load(R"(
            import QtQuick
            import Tidewright.Controls
            FocusScope {
                id: user
                property int chosen: 0
                property string picks: ""
                focus: true
                SegmentedPicker {
                    objectName: "picker"
                    x: 20; y: 20
                    label: "Show"
                    options: ["All", "Can Clean", "Kept"]
                    currentIndex: user.chosen
                    onPicked: index => { user.picks += index; user.chosen = index }
                }
            })",
                                 {300, 100}));
    }
    std::string picks() { return m_scene.root().property("picks").toString().toStdString(); }
    bool isChecked(const char* name) {
        return test::QmlScene::accessible(m_scene.named(name))->state().checked;
    }

    test::QmlScene m_scene;
};

TEST_F(SegmentedPickerTest, IsPickedFromByTheMouse) {
    m_scene.click(m_scene.named("Kept"));
    m_scene.click(m_scene.named("Can Clean"));
    m_scene.click(m_scene.named("Can Clean"));
    EXPECT_EQ(picks(), "21") << "what is picked already is not picked again";
    EXPECT_FALSE(m_scene.item("picker")->hasActiveFocus());
}

TEST_F(SegmentedPickerTest, IsPickedFromByArrows) {
    m_scene.press(Qt::Key_Tab);
    ASSERT_TRUE(m_scene.item("picker")->hasActiveFocus());
    for (const Qt::Key key :
         {Qt::Key_Left, Qt::Key_Right, Qt::Key_Right, Qt::Key_Right, Qt::Key_Left})
        m_scene.press(key);
    EXPECT_EQ(picks(), "121");
}

TEST_F(SegmentedPickerTest, IsPickedFromByAReader) {
    QAccessibleInterface* group = test::QmlScene::accessible(m_scene.named("Show"));
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group->childCount(), 3);
    EXPECT_TRUE(group->state().focusable);
    for (int index = 0; index < group->childCount(); ++index)
        EXPECT_EQ(group->child(index)->role(), QAccessible::RadioButton);
    EXPECT_TRUE(isChecked("All"));
    m_scene.pressByReader(m_scene.named("Kept"));
    EXPECT_EQ(picks(), "2");
    EXPECT_TRUE(isChecked("Kept"));
    EXPECT_FALSE(isChecked("All"));
}

TEST_F(SegmentedPickerTest, ThumbStandsBehindWhatIsPicked) {
    const auto groundOf = [&](const char* name) {
        return m_scene.picture(m_scene.named(name)).pixelColor(5, 13);
    };
    const QColor thumb = m_scene.theme().window();
    EXPECT_EQ(groundOf("All"), thumb);
    EXPECT_NE(groundOf("Kept"), thumb);
    m_scene.root().setProperty("chosen", 2);
    EXPECT_EQ(groundOf("Kept"), thumb);
    EXPECT_NE(groundOf("All"), thumb);
}

TEST_F(SegmentedPickerTest, NothingMovesWhenAnotherIsPicked) {
    const double width = m_scene.item("picker")->width();
    const double x = m_scene.named("Kept")->x();
    m_scene.root().setProperty("chosen", 1);
    EXPECT_EQ(m_scene.item("picker")->width(), width);
    EXPECT_EQ(m_scene.named("Kept")->x(), x);
}

TEST(SegmentedPickerMotionTest, ThumbStandsStillAtTheStartAndSlidesAfterwards) {
    test::QmlScene scene;
    scene.theme().setSystemLook({false, {}, false});
    ASSERT_TRUE(scene.load(R"(
        import Tidewright.Controls
        SegmentedPicker { label: "Show"; options: ["All", "Can Clean", "Kept"]; currentIndex: 2 })"));
    const auto isThumbAt = [&](const char* name) {
        return scene.picture(scene.named(name)).pixelColor(5, 13) == scene.theme().window();
    };
    EXPECT_TRUE(isThumbAt("Kept"));
    scene.root().setProperty("currentIndex", 0);
    EXPECT_FALSE(isThumbAt("All")) << "it is on its way";
    EXPECT_TRUE(test::QmlScene::wait([&] { return isThumbAt("All"); }));
}

} // namespace
} // namespace tidewright
