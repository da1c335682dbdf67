#include "tests/support/gui/QmlScene.h"

#include <gtest/gtest.h>

namespace tidewright {
namespace {

/// Into the folder that TIDEWRIGHT_GALLERY names, to be looked at; nowhere without it.
void keep(const QImage& picture, const QString& name) {
    const QString folder = qEnvironmentVariable("TIDEWRIGHT_GALLERY");
    if (folder.isEmpty())
        return;
    const double ratio = picture.devicePixelRatio();
    EXPECT_TRUE(picture.save(QStringLiteral("%1/%2@%3.png").arg(folder, name).arg(ratio)));
}

class GalleryTest : public testing::TestWithParam<bool> {
protected:
    void SetUp() override { m_scene.theme().setSystemLook({GetParam(), {}, true}); }
    void keepPicture(const char* what) {
        keep(m_scene.picture(),
             QStringLiteral("%1-%2").arg(QLatin1String(what),
                                         QLatin1String(GetParam() ? "dark" : "light")));
    }

    test::QmlScene m_scene;
};

// Run again with a screen of twice the pixels.

TEST_P(GalleryTest, ShowsAllControlsInAWindow) {
    const QString page = QStringLiteral(TIDEWRIGHT_TESTS "/app/controls/Gallery.qml");
    ASSERT_TRUE(m_scene.load(QUrl::fromLocalFile(page)));
    keepPicture("gallery");
    const QImage still = m_scene.picture();
    EXPECT_EQ(still.size(), m_scene.window().size() * still.devicePixelRatio());

    m_scene.press(Qt::Key_Down); // in the menu
    m_scene.moveTo(m_scene.item("plain"));
    ASSERT_TRUE(test::QmlScene::wait([&] { return m_scene.hasText("Scan the disk"); }));
    keepPicture("hovered");
    EXPECT_NE(m_scene.picture(), still);
}

TEST_P(GalleryTest, ShowsASheetInAWindow) {
    ASSERT_TRUE(m_scene.load(R"(
        import QtQuick
        import Tidewright.Controls
        FocusScope {
            focus: true
            DiskOrbView { x: 40; y: 300; usedFraction: 0.7 }
            Sheet {
                title: "Review cleanup"
                visible: true
                Column {
                    x: 24; y: 24; spacing: 14
                    Words { text: "Review cleanup"; font: Theme.semibold(Theme.title) }
                    Row {
                        spacing: 36
                        Figure { label: "to free"; size: "37.7 GB"; color: Theme.green; labelBelow: true }
                        Figure { label: "deleted or cleaned by tools"; size: "34.6 GB"; labelBelow: true }
                    }
                    GlassCard {
                        radius: Theme.listRadius; width: 572; height: 300; padding: 0; hasShadow: false
                        ListArea {
                            anchors.fill: parent
                            model: 30
                            delegate: Words { required property int index; x: 14; height: 36; text: "Row " + index }
                        }
                    }
                    Row {
                        spacing: 10
                        PushButton { objectName: "cancel"; text: "Cancel" }
                        PushButton { text: "Clean 37.7 GB"; kind: "prominent"; isDefault: true }
                        TickBox { text: "Tick"; checked: true }
                        SearchField { placeholder: "Filter items" }
                    }
                }
            }
        })",
                             {1180, 760}));
    ASSERT_TRUE(test::QmlScene::wait([&] { return m_scene.hasItem("cancel"); }));
    keepPicture("sheet");
    const QImage still = m_scene.picture();
    m_scene.press(Qt::Key_Tab);
    m_scene.press(Qt::Key_Tab);
    keepPicture("focus");
    EXPECT_NE(m_scene.picture(), still);
}

INSTANTIATE_TEST_SUITE_P(Both, GalleryTest, testing::Bool(), [](const auto& mode) {
    return mode.param ? "dark" : "light";
});

} // namespace
} // namespace tidewright
