#include "tests/support/gui/QmlScene.h"

#include <gtest/gtest.h>

namespace tidewright {
namespace {

constexpr auto sceneText = R"(
import QtQuick
import Tidewright.Controls

TableWithMap {
    focus: true
    margin: 24
    mapShown: false
    hasRoom: true
    table: Component { Item { objectName: "table"; focus: true } }
    map: Component { Item { objectName: "map"; focus: true } }
}
)";

class TableWithMapTest : public testing::Test {
protected:
    void show(bool mapShown, bool hasRoom) {
        m_scene.root().setProperty("hasRoom", hasRoom);
        m_scene.root().setProperty("mapShown", mapShown);
        test::QmlScene::settle();
    }

    test::QmlScene m_scene;
};

TEST_F(TableWithMapTest, MapStandsAboveTheTableOrInItsPlace) {
    m_scene.theme().setSystemLook({false, {}, true});
    ASSERT_TRUE(m_scene.load(sceneText, {800, 600}));
    EXPECT_FALSE(m_scene.hasItem("map"));
    EXPECT_EQ(m_scene.item("table")->height(), 600);
    show(true, true);
    EXPECT_EQ(m_scene.item("map")->height(), Theme::mapHeight);
    EXPECT_EQ(m_scene.item("map")->width(), 800 - 2 * 24);
    EXPECT_EQ(m_scene.item("table")->height(), 600 - Theme::mapHeight - Theme::cardSpacing);
    EXPECT_TRUE(m_scene.item("table")->hasActiveFocus());
    show(true, false);
    EXPECT_FALSE(m_scene.hasItem("table"));
    EXPECT_EQ(m_scene.item("map")->height(), 600 - 24);
    EXPECT_TRUE(m_scene.item("map")->hasActiveFocus());
    show(false, false);
    EXPECT_FALSE(m_scene.hasItem("map"));
    EXPECT_EQ(m_scene.item("table")->height(), 600);
    EXPECT_TRUE(m_scene.item("table")->hasActiveFocus());
}

TEST_F(TableWithMapTest, TableMakesRoomByASpring) {
    m_scene.theme().setSystemLook({false, {}, false});
    ASSERT_TRUE(m_scene.load(sceneText, {800, 600}));
    show(true, true);
    EXPECT_GT(m_scene.item("table")->height(), 600 - Theme::mapHeight);
    EXPECT_TRUE(test::QmlScene::wait([&] {
        return m_scene.item("table")->height() == 600 - Theme::mapHeight - Theme::cardSpacing;
    }));
    show(false, true);
    EXPECT_TRUE(m_scene.hasItem("map")) << "as long as it goes";
    EXPECT_TRUE(test::QmlScene::wait([&] { return !m_scene.hasItem("map"); }));
    EXPECT_EQ(m_scene.item("table")->height(), 600);
}

} // namespace
} // namespace tidewright
