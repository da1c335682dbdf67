#include "tests/support/gui/QmlScene.h"

#include <gmock/gmock.h>

namespace tidewright {
namespace {

/// Whether a pixel of the picture has that very colour.
bool has(const QImage& picture, const QColor& color) {
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (picture.pixelColor(x, y) == color)
                return true;
    return false;
}

// Runs again with a screen of twice the pixels.
TEST(SymbolTest, HasItsSizeAndColourInAWindow) {
    test::QmlScene scene;
    scene.theme().setSystemLook({false, {}, true});
    ASSERT_TRUE(scene.load(R"(
        import QtQuick
        import Tidewright.Controls
        Row {
            Symbol { objectName: "small"; name: "internaldrive.fill" }
            Symbol { objectName: "large"; name: "internaldrive"; size: 34; color: Theme.orange }
            Symbol { objectName: "none"; name: "" }
        })",
                           {100, 40}));
    EXPECT_EQ(scene.item("small")->size(), QSizeF(16, 16));
    EXPECT_EQ(scene.item("large")->size(), QSizeF(34, 34));
    EXPECT_EQ(scene.item("none")->size(), QSizeF(16, 16));
    EXPECT_TRUE(has(scene.picture(scene.item("large")), scene.theme().orange()));
    scene.theme().setSystemLook({true, {}, true});
    EXPECT_TRUE(has(scene.picture(scene.item("large")), scene.theme().orange()))
        << "it follows the theme";
}

TEST(SymbolTest, AnUnknownOneIsSaid) {
    test::QmlScene scene;
    ASSERT_TRUE(scene.load("import Tidewright.Controls; Symbol { name: 'nothing' }"));
    EXPECT_THAT(scene.takeMessages(), testing::HasSubstr("There is no symbol \"nothing\"."));
}

} // namespace
} // namespace tidewright
