#include "tests/support/gui/QmlScene.h"

#include <gtest/gtest.h>

namespace tidewright {
namespace {

class GlassCardTest : public testing::TestWithParam<bool> {
protected:
    void SetUp() override {
        m_scene.theme().setSystemLook({GetParam(), {}, true});
        ASSERT_TRUE(m_scene.load(R"(
            import QtQuick
            import Tidewright.Controls
            Item {
                GlassCard {
                    objectName: "plain"; x: 40; y: 40; hoverable: true
                    Item { objectName: "content"; implicitWidth: 100; implicitHeight: 60 }
                }
                GlassCard {
                    objectName: "tinted"; x: 240; y: 40; tint: Theme.orange; hoverable: true
                    Item { implicitWidth: 100; implicitHeight: 60 }
                }
                GlassCard {
                    objectName: "still"; x: 440; y: 40; width: 132
                    Item { objectName: "wide"; implicitWidth: 10; implicitHeight: 60 }
                }
            })",
                                 {640, 180}));
    }
    QColor ground(const char* name) {
        return m_scene.picture(m_scene.item(name)).pixelColor(66, 46);
    }

    test::QmlScene m_scene;
};

TEST_P(GlassCardTest, StandsAroundItsContent) {
    EXPECT_EQ(m_scene.item("plain")->size(), QSizeF(132, 92));
    EXPECT_EQ(m_scene.item("content")->mapToScene({0, 0}), QPointF(56, 56));
    EXPECT_EQ(m_scene.item("wide")->parentItem()->width(), 100);
}

TEST_P(GlassCardTest, HasItsTint) {
    EXPECT_EQ(ground("plain"), ground("still"));
    EXPECT_NE(ground("plain"), ground("tinted"));
    EXPECT_GT(ground("tinted").red() - ground("tinted").blue(),
              ground("plain").red() - ground("plain").blue());
}

TEST_P(GlassCardTest, HoverLightensWhereItIsWanted) {
    for (const char* const name : {"plain", "tinted"}) {
        const int before = ground(name).lightness();
        m_scene.moveTo(m_scene.item(name));
        EXPECT_GT(ground(name).lightness(), before) << name;
        m_scene.item(name)->setProperty("pressed", true);
        EXPECT_LT(ground(name).lightness(), before) << name;
        m_scene.item(name)->setProperty("pressed", false);
    }
    const QColor before = ground("still");
    m_scene.moveTo(m_scene.item("still"));
    EXPECT_EQ(ground("still"), before);
}

TEST_P(GlassCardTest, HasAFaintShadow) {
    const QImage picture = m_scene.picture();
    const QColor window = m_scene.theme().window();
    EXPECT_LT(picture.pixelColor(106, 140).lightness(), window.lightness());
    EXPECT_EQ(picture.pixelColor(106, 5), window);
    m_scene.item("plain")->setProperty("hasShadow", false);
    EXPECT_EQ(m_scene.picture().pixelColor(106, 140), window);
}

INSTANTIATE_TEST_SUITE_P(Both, GlassCardTest, testing::Bool(), [](const auto& mode) {
    return mode.param ? "dark" : "light";
});

} // namespace
} // namespace tidewright
