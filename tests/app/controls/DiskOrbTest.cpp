#include "app/controls/DiskOrb.h"

#include "app/controls/ThemeColors.h"
#include "tests/support/gui/QmlScene.h"

#include <QPainter>
#include <gtest/gtest.h>

#include <cmath>

namespace tidewright {
namespace {

class DiskOrbTest : public testing::Test {
protected:
    DiskOrbTest() {
        m_window.resize(300, 300);
        m_orb.setParentItem(m_window.contentItem());
        m_orb.setSize({100, 100});
        m_orb.setClock([this] { return m_now; });
    }

    void show() {
        m_window.show();
        ASSERT_TRUE(test::QmlScene::wait([&] { return m_orb.isMoving() || m_orb.reduceMotion(); }));
    }

    QImage picture(QSize size = {100, 100}, double scale = 1) {
        QImage image(size * scale, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.scale(scale, scale);
        m_orb.setSize(size);
        m_orb.paint(&painter);
        painter.end();
        return image.convertToFormat(QImage::Format_ARGB32);
    }

    double m_now = 1000;
    QQuickWindow m_window;
    DiskOrb m_orb;
};

// --- Levels

TEST_F(DiskOrbTest, FillsUpFromEmptyWhenItIsFirstSeen) {
    m_orb.setUsedFraction(0.8);
    m_now += 60;
    EXPECT_EQ(m_orb.level(), 0) << "nobody has seen it yet";
    show();
    EXPECT_EQ(m_orb.level(), 0);
    EXPECT_EQ(m_orb.time(), 0);
    m_now += 0.45;
    EXPECT_NEAR(m_orb.level(), 0.8 * 0.821025553585931, 1e-12);
    EXPECT_NEAR(m_orb.time(), 0.45, 1e-12);
    m_now += 60;
    EXPECT_EQ(m_orb.level(), 0.8);
}

TEST_F(DiskOrbTest, AChangeInMidTransitionGoesOnFromTheShownLevel) {
    m_orb.setUsedFraction(0.8);
    show();
    m_now += 0.1;
    const double shown = m_orb.level();
    EXPECT_NEAR(shown, 0.8 * 0.15515580531076167, 1e-12);
    m_orb.setUsedFraction(0.3);
    EXPECT_EQ(m_orb.level(), shown) << "it does not jump";
    m_now += 0.45;
    EXPECT_NEAR(m_orb.level(), shown + 0.821025553585931 * (0.3 - shown), 1e-12);
    EXPECT_NEAR(m_orb.time(), 0.55, 1e-12) << "the waves go on";
}

TEST_F(DiskOrbTest, TheSameFractionChangesNothing) {
    m_orb.setUsedFraction(0.8);
    show();
    m_now += 0.1;
    m_orb.setUsedFraction(0.8);
    m_now += 0.35;
    EXPECT_NEAR(m_orb.level(), 0.8 * 0.821025553585931, 1e-12) << "it has not begun anew";
}

TEST_F(DiskOrbTest, GoesOnWhereItStandsAfterItWasHidden) {
    m_orb.setUsedFraction(0.8);
    show();
    m_now += 60;
    m_window.hide();
    ASSERT_TRUE(test::QmlScene::wait([&] { return !m_orb.isMoving(); }));
    show();
    EXPECT_EQ(m_orb.level(), 0.8) << "it does not fill up again";
}

TEST_F(DiskOrbTest, StandsStillWhereMotionIsReduced) {
    m_orb.setReduceMotion(true);
    m_orb.setUsedFraction(0.8);
    EXPECT_EQ(m_orb.level(), 0.8);
    show();
    EXPECT_EQ(m_orb.level(), 0.8);
    const QImage before = picture();
    m_now += 0.3;
    EXPECT_EQ(m_orb.time(), 0);
    EXPECT_EQ(picture(), before);
    m_orb.setUsedFraction(0.4);
    EXPECT_EQ(m_orb.level(), 0.4);
    EXPECT_FALSE(m_orb.property("running").toBool());
}

TEST_F(DiskOrbTest, WavesMoveWhereMotionIsNotReduced) {
    m_orb.setUsedFraction(0.5);
    show();
    EXPECT_TRUE(m_orb.property("running").toBool());
    m_now += 60;
    const QImage before = picture();
    EXPECT_EQ(picture(), before);
    m_now += 0.3;
    EXPECT_NE(picture(), before);
}

// --- Pictures

bool isLike(const QColor& color, const QColor& other) {
    return std::abs(color.hsvHue() - other.hsvHue()) < 20 && color.hsvSaturation() > 60;
}

TEST_F(DiskOrbTest, HasLiquidOfItsHealthUpToItsLevel) {
    m_orb.setReduceMotion(true);
    for (const char* const health : {"good", "low", "critical"})
        for (const bool isDark : {false, true})
            for (const double level : {0.2, 0.5, 0.8}) {
                m_orb.setHealth(QString::fromLatin1(health));
                m_orb.setDark(isDark);
                m_orb.setUsedFraction(level);
                const QImage image = picture();
                const LiquidColors colors = liquidColors(m_orb.health());
                const int surface = static_cast<int>(std::lround(100 * (1 - level)));
                EXPECT_TRUE(isLike(image.pixelColor(50, surface + 4), colors.top))
                    << health << level;
                EXPECT_TRUE(isLike(image.pixelColor(50, 90), colors.bottom)) << health << level;
                EXPECT_LT(image.pixelColor(60, surface - 4).alpha(), 160) << health << level;
            }
}

TEST_F(DiskOrbTest, IsEmptyAtNothingAndFullAtOne) {
    m_orb.setReduceMotion(true);
    m_orb.setUsedFraction(0);
    EXPECT_LT(picture().pixelColor(50, 90).alpha(), 100);
    for (const double level : {1.0, 1.7}) {
        m_orb.setUsedFraction(level);
        EXPECT_EQ(picture().pixelColor(50, 8).alpha(), 255) << level;
    }
}

TEST_F(DiskOrbTest, IsACircleInTheMiddleOfItsItem) {
    m_orb.setReduceMotion(true);
    m_orb.setUsedFraction(1);
    const QImage image = picture({140, 100});
    for (const QPoint corner : {QPoint(21, 1), QPoint(118, 1), QPoint(21, 98), QPoint(118, 98)})
        EXPECT_EQ(image.pixelColor(corner).alpha(), 0);
    EXPECT_EQ(image.pixelColor(10, 50).alpha(), 0);
    EXPECT_EQ(image.pixelColor(130, 50).alpha(), 0);
    EXPECT_GT(image.pixelColor(21, 50).alpha(), 200);
    EXPECT_GT(image.pixelColor(118, 50).alpha(), 200);
}

TEST_F(DiskOrbTest, IsDrawnForThePixelsOfTheScreen) {
    m_orb.setReduceMotion(true);
    m_orb.setUsedFraction(0.6);
    const QImage large = picture({200, 200});
    EXPECT_EQ(picture({100, 100}, 2), large);
    EXPECT_NE(picture({100, 100}).scaled(200, 200), large);
}

TEST_F(DiskOrbTest, FollowsItsLook) {
    m_orb.setReduceMotion(true);
    m_orb.setUsedFraction(0.6);
    const QImage before = picture();
    m_orb.setHealth(QStringLiteral("low"));
    const QImage low = picture();
    EXPECT_NE(low, before);
    m_orb.setDark(true);
    EXPECT_NE(picture(), low);
    m_orb.setDark(false);
    m_orb.setHealth(QStringLiteral("good"));
    EXPECT_EQ(picture(), before);
}

TEST_F(DiskOrbTest, DrawsNothingWhereThereIsNoRoom) {
    EXPECT_EQ(picture({20, 20}).pixelColor(10, 10).alpha() > 0, true);
    m_orb.setSize({0, 0});
    QImage image(4, 4, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    m_orb.paint(&painter);
    painter.end();
    EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
}

} // namespace
} // namespace tidewright
