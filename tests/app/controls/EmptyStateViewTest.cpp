#include "tests/support/gui/QmlScene.h"

#include <gtest/gtest.h>

namespace tidewright {
namespace {

TEST(EmptyStateViewTest, StandsInTheMiddleAndSaysItsWords) {
    test::QmlScene scene;
    ASSERT_TRUE(scene.load(R"(
        import Tidewright.Controls
        EmptyStateView {
            property int acts: 0
            title: "Not scanned yet"; symbolName: "cpu"; message: "Scan your Mac to see Android items."
            onActed: ++acts
        })",
                           {600, 400}));
    EXPECT_TRUE(scene.hasNamed("Not scanned yet"));
    QQuickItem* message = scene.named("Scan your Mac to see Android items.");
    EXPECT_EQ(message->mapToScene({message->width() / 2, 0}).x(), 300);
    EXPECT_FALSE(scene.hasNamed("Scan"));

    scene.root().setProperty("actionTitle", QStringLiteral("Scan"));
    scene.click(scene.named("Scan"));
    scene.pressByReader(scene.named("Scan"));
    EXPECT_EQ(scene.root().property("acts").toInt(), 2);
}

TEST(EmptyStateViewTest, WrapsInANarrowPlace) {
    test::QmlScene scene;
    ASSERT_TRUE(scene.load(R"(
        import Tidewright.Controls
        EmptyStateView {
            title: "No selection"; symbolName: "cursorarrow.click"
            message: "Select an item to see what it is and why Tidewright made its decision."
        })",
                           {160, 400}));
    for (QQuickItem* item : scene.shownItems()) {
        const QRectF place = item->mapRectToScene(QRectF({}, item->size()));
        EXPECT_GE(place.left(), 0);
        EXPECT_LE(place.right(), 160);
    }
}

} // namespace
} // namespace tidewright
