#include "app/controls/OrbLiquid.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tidewright {
namespace {

constexpr double omega = 6.981317007977318;

// --- Levels

TEST(LevelTransitionTest, IsACriticallyDampedSpring) {
    const LevelTransition transition{0, 1, 0};
    // 1 - (1 + x) e^-x for x = 1, 2, 5.
    EXPECT_NEAR(transition.levelAt(1 / omega), 0.26424111765711533, 1e-12);
    EXPECT_NEAR(transition.levelAt(2 / omega), 0.59399415029016192, 1e-12);
    EXPECT_NEAR(transition.levelAt(5 / omega), 0.95957231800548719, 1e-12);
    EXPECT_NEAR(transition.levelAt(0.9), 0.986399068534425, 1e-12);
}

TEST(LevelTransitionTest, GoesFromOneLevelToTheOtherEitherWay) {
    const LevelTransition up{0.2, 0.6, 100};
    EXPECT_NEAR(up.levelAt(100 + 2 / omega), 0.2 + 0.4 * 0.59399415029016192, 1e-12);
    const LevelTransition down{0.6, 0.2, 100};
    EXPECT_NEAR(down.levelAt(100 + 2 / omega), 0.6 - 0.4 * 0.59399415029016192, 1e-12);
}

TEST(LevelTransitionTest, IsAtItsBeginningUntilItHasBegun) {
    const LevelTransition transition{0.3, 0.8, 50};
    for (const double time : {-1e9, 0.0, 49.0, 49.999, 50.0})
        EXPECT_EQ(transition.levelAt(time), 0.3) << time;
    EXPECT_GT(transition.levelAt(50.001), 0.3);
}

TEST(LevelTransitionTest, NeverGoesBeyondItsEnd) {
    const LevelTransition transition{0, 1, 0};
    double before = 0;
    for (int step = 1; step < 2000; ++step) {
        const double level = transition.levelAt(step * 0.01);
        EXPECT_GE(level, before);
        EXPECT_LE(level, 1);
        before = level;
    }
    EXPECT_EQ(transition.levelAt(1e9), 1);
    EXPECT_EQ((LevelTransition{0.5, 0.5, 0}.levelAt(0.3)), 0.5);
}

// --- Waves

TEST(OrbLiquidTest, WaveIsTheSumOfBothSines) {
    const auto points = wavePoints({0, 0, 100, 100}, 0.5, 0);
    ASSERT_EQ(points.size(), 49U);
    const std::pair<std::size_t, QPointF> expected[] = {{0, {-2, 51.7371272475}},
                                                        {12, {24, 49.6731147958}},
                                                        {24, {50, 50}},
                                                        {36, {76, 50.3268852042}},
                                                        {48, {102, 48.2628727525}}};
    for (const auto& [index, point] : expected) {
        EXPECT_NEAR(points[index].x(), point.x(), 1e-9) << index;
        EXPECT_NEAR(points[index].y(), point.y(), 1e-9) << index;
    }
}

TEST(OrbLiquidTest, WaveMovesWithTimeAndStandsAtItsLevel) {
    const auto points = wavePoints({10, 20, 200, 200}, 0.8, 3.5);
    const std::pair<std::size_t, QPointF> expected[] = {{0, {8, 61.3196628390}},
                                                        {12, {59, 61.9525551460}},
                                                        {24, {110, 56.7276611265}},
                                                        {36, {161, 61.4621255056}},
                                                        {48, {212, 60.7300302611}}};
    for (const auto& [index, point] : expected) {
        EXPECT_NEAR(points[index].x(), point.x(), 1e-9) << index;
        EXPECT_NEAR(points[index].y(), point.y(), 1e-9) << index;
    }
}

TEST(OrbLiquidTest, WaveIsCalmestWhereTheOrbIsNearlyFullOrEmpty) {
    EXPECT_DOUBLE_EQ(waveAmplitude(100, 0.5), 1.8);
    EXPECT_DOUBLE_EQ(waveAmplitude(100, 0), 0.72);
    EXPECT_DOUBLE_EQ(waveAmplitude(100, 1), 0.72);
    EXPECT_DOUBLE_EQ(waveAmplitude(210, 0.75), 210 * 0.018 * 0.7);
}

TEST(OrbLiquidTest, LevelsBeyondTheOrbAreItsEnds) {
    const QRectF square(0, 0, 100, 100);
    EXPECT_EQ(wavePoints(square, 1.5, 2), wavePoints(square, 1, 2));
    EXPECT_EQ(wavePoints(square, -0.5, 2), wavePoints(square, 0, 2));
    for (const QPointF& point : wavePoints(square, 1, 2))
        EXPECT_NEAR(point.y(), 0, 1.5 * 0.72);
    for (const QPointF& point : wavePoints(square, 0, 2))
        EXPECT_NEAR(point.y(), 100, 1.5 * 0.72);
}

} // namespace
} // namespace tidewright
