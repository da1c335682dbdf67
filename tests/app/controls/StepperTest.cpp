#include "tests/support/gui/QmlScene.h"

#include <QAccessible>
#include <QTest>
#include <gtest/gtest.h>

namespace tidewright {
namespace {

class StepperTest : public testing::Test {
protected:
    void SetUp() override {
        m_scene.theme().setSystemLook({false, {}, true});
        ASSERT_TRUE(m_scene.load(R"(
            import QtQuick
            import Tidewright.Controls
            FocusScope {
                id: user
                property int value: 3
                property int asked: -1
                property bool isEnabled: true
                focus: true
                Flickable {
                    id: page
                    objectName: "page"
                    anchors.fill: parent
                    contentHeight: 1000
                    interactive: false
                    WheelScroll { area: page; orientation: Qt.Vertical }
                    Stepper {
                        objectName: "stepper"
                        x: 20; y: 20
                        text: "Warn below " + user.value
                        number: user.value
                        lowest: 0
                        highest: 5
                        enabled: user.isEnabled
                        onDecreased: --user.value
                        onIncreased: ++user.value
                        onAsked: number => user.asked = number
                    }
                }
            })",
                                 {120, 80}));
    }
    QQuickItem* stepper() { return m_scene.item("stepper"); }
    int value() { return m_scene.root().property("value").toInt(); }
    void setValue(int value) { m_scene.root().setProperty("value", value); }
    QPoint half(bool isRight) {
        const QRectF place = stepper()->mapRectToScene(QRectF({}, stepper()->size()));
        return QPointF(place.x() + place.width() * (isRight ? 0.75 : 0.25), place.center().y())
            .toPoint();
    }
    QAccessibleInterface& reader() { return *test::QmlScene::accessible(stepper()); }

    test::QmlScene m_scene;
};

TEST_F(StepperTest, ItsHalvesStepAndStopAtTheBounds) {
    m_scene.clickAt(half(false));
    EXPECT_EQ(value(), 2);
    for (int i = 0; i < 4; ++i)
        m_scene.clickAt(half(false));
    EXPECT_EQ(value(), 0);
    for (int i = 0; i < 8; ++i)
        m_scene.clickAt(half(true));
    EXPECT_EQ(value(), 5);
}

TEST_F(StepperTest, StepsByKeysAndStopsAtTheBounds) {
    m_scene.press(Qt::Key_Tab);
    ASSERT_TRUE(stepper()->hasActiveFocus());
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Right, Qt::Key_Plus, Qt::Key_Up})
        m_scene.press(key);
    EXPECT_EQ(value(), 5);
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Left, Qt::Key_Minus})
        m_scene.press(key);
    EXPECT_EQ(value(), 2);
    for (int i = 0; i < 4; ++i)
        m_scene.press(Qt::Key_Down);
    EXPECT_EQ(value(), 0);
}

TEST_F(StepperTest, TakesTheFocusAndShowsItOnlyForTheKeyboard) {
    m_scene.clickAt(half(true));
    EXPECT_TRUE(stepper()->hasActiveFocus());
    EXPECT_FALSE(stepper()->property("visualFocus").toBool());
    m_scene.press(Qt::Key_Up);
    EXPECT_EQ(value(), 5);
}

TEST_F(StepperTest, StepsByTheWheelAndKeepsItFromThePage) {
    m_scene.scroll(stepper(), 1);
    EXPECT_EQ(value(), 4);
    m_scene.scroll(stepper(), 3);
    EXPECT_EQ(value(), 5);
    m_scene.scroll(stepper(), -7);
    EXPECT_EQ(value(), 0);
    EXPECT_EQ(m_scene.item("page")->property("contentY").toReal(), 0);
}

TEST_F(StepperTest, SmallTurnsOfTheWheelAddUp) {
    const QPointF point = half(true);
    for (const int angle : {50, 50, 30}) {
        EXPECT_EQ(value(), 3);
        QWheelEvent event(point, m_scene.window().mapToGlobal(point), {}, QPoint(0, angle),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&m_scene.window(), &event);
        test::QmlScene::settle();
    }
    EXPECT_EQ(value(), 4);
}

TEST_F(StepperTest, GoesOnWhileItIsHeldDown) {
    setValue(0);
    QTest::mousePress(&m_scene.window(), Qt::LeftButton, {}, half(true));
    EXPECT_EQ(value(), 1) << "at once";
    EXPECT_TRUE(test::QmlScene::wait([&] { return value() == 5; }));
    QTest::mouseRelease(&m_scene.window(), Qt::LeftButton, {}, half(true));
    setValue(1);
    EXPECT_FALSE(test::QmlScene::wait([&] { return value() != 1; }, 600)) << "released";
}

TEST_F(StepperTest, StopsWhenThePointerLeaves) {
    setValue(0);
    QTest::mousePress(&m_scene.window(), Qt::LeftButton, {}, half(true));
    QTest::mouseMove(&m_scene.window(), QPoint(110, 70));
    const int reached = value();
    EXPECT_FALSE(test::QmlScene::wait([&] { return value() != reached; }, 600));
    QTest::mouseRelease(&m_scene.window(), Qt::LeftButton, {}, QPoint(110, 70));
}

TEST_F(StepperTest, IsASpinBoxForAReader) {
    EXPECT_EQ(reader().role(), QAccessible::SpinBox);
    EXPECT_EQ(reader().text(QAccessible::Name), QStringLiteral("Warn below 3"));
    EXPECT_EQ(reader().childCount(), 0) << "it is one thing";
    ASSERT_NE(reader().valueInterface(), nullptr);
    EXPECT_EQ(reader().valueInterface()->currentValue().toInt(), 3);
    EXPECT_EQ(reader().valueInterface()->minimumValue().toInt(), 0);
    EXPECT_EQ(reader().valueInterface()->maximumValue().toInt(), 5);
    EXPECT_EQ(reader().valueInterface()->minimumStepSize().toInt(), 1);
    m_scene.act(stepper(), QAccessibleActionInterface::increaseAction());
    EXPECT_EQ(value(), 4);
    EXPECT_EQ(reader().valueInterface()->currentValue().toInt(), 4);
    m_scene.act(stepper(), QAccessibleActionInterface::decreaseAction());
    m_scene.act(stepper(), QAccessibleActionInterface::decreaseAction());
    EXPECT_EQ(value(), 2);
}

TEST_F(StepperTest, AReaderAsksForANumberAndSeesTheOneThatHolds) {
    reader().valueInterface()->setCurrentValue(5);
    EXPECT_EQ(m_scene.root().property("asked").toInt(), 5);
    EXPECT_EQ(reader().valueInterface()->currentValue().toInt(), 3);
    setValue(4);
    EXPECT_EQ(reader().valueInterface()->currentValue().toInt(), 4);
}

TEST_F(StepperTest, DisabledItDoesNothing) {
    m_scene.root().setProperty("isEnabled", false);
    m_scene.clickAt(half(true));
    m_scene.scroll(stepper(), 1);
    m_scene.act(stepper(), QAccessibleActionInterface::increaseAction());
    EXPECT_EQ(value(), 3);
}

TEST_F(StepperTest, ShowsHoverPressAndBounds) {
    const auto picture = [&](bool isRight) {
        const QPoint middle = half(isRight);
        return m_scene.picture().copy(middle.x() - 10, middle.y() - 9, 20, 18);
    };
    QTest::mouseMove(&m_scene.window(), QPoint(110, 70));
    test::QmlScene::settle();
    const QImage still = picture(true);
    QTest::mouseMove(&m_scene.window(), half(true));
    test::QmlScene::settle();
    const QImage hovered = picture(true);
    EXPECT_NE(hovered, still);
    setValue(4);
    QTest::mousePress(&m_scene.window(), Qt::LeftButton, {}, half(true));
    const QImage atTheBound = picture(true);
    EXPECT_NE(atTheBound, hovered);
    EXPECT_NE(atTheBound, still) << "its sign is pale";
    QTest::mouseRelease(&m_scene.window(), Qt::LeftButton, {}, half(true));
}

} // namespace
} // namespace tidewright
