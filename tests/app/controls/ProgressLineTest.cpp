#include "tests/support/gui/QmlScene.h"

#include <QAccessible>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

class ProgressLineTest : public testing::Test {
protected:
    void load(bool reduceMotion) {
        m_scene.theme().setSystemLook({false, {}, reduceMotion});
        ASSERT_TRUE(m_scene.load(R"(
            import QtQuick
            import Tidewright.Controls
            Item { ProgressLine { objectName: "line"; label: "Scanning"; value: 0.25 } })",
                                 {200, 6}));
    }
    /// How much of the line has the accent.
    int filled() {
        const QImage line = m_scene.picture(m_scene.item("line"));
        int count = 0;
        for (int x = 0; x < line.width(); ++x)
            count += line.pixelColor(x, line.height() / 2) == m_scene.theme().accent() ? 1 : 0;
        return count;
    }
    void set(double value) { m_scene.item("line")->setProperty("value", value); }

    test::QmlScene m_scene;
};

TEST_F(ProgressLineTest, IsFilledByItsValue) {
    load(true);
    for (const auto& [value, width] : {std::pair(0.25, 50), {0.0, 0}, {1.0, 200}, {0.5, 100}}) {
        set(value);
        EXPECT_NEAR(filled(), width, 2) << value;
    }
    set(0.001);
    EXPECT_GT(filled(), 0) << "a little can be seen";
}

TEST_F(ProgressLineTest, GlidesToItsValue) {
    load(false);
    set(1);
    EXPECT_LT(filled(), 150);
    EXPECT_TRUE(test::QmlScene::wait([&] { return filled() > 196; }));
}

TEST_F(ProgressLineTest, IsAProgressBarForAReader) {
    load(true);
    QAccessibleInterface* known = test::QmlScene::accessible(m_scene.named("Scanning"));
    ASSERT_NE(known, nullptr);
    EXPECT_EQ(known->role(), QAccessible::ProgressBar);
    EXPECT_EQ(known->text(QAccessible::Description), QStringLiteral("25 percent"));
}

} // namespace
} // namespace tidewright
