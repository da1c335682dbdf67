// How the liquid in the orb stands and moves, as numbers: without time of its own and without a
// screen.
#pragma once

#include <QPointF>
#include <QRectF>

#include <array>

namespace tidewright {

/// From one level to another on a critically damped spring. Levels are parts of the orb's height,
/// times are in seconds.
struct LevelTransition {
    double from = 0;
    double to = 0;
    double began = 0;

    double levelAt(double time) const;
};

/// How high the wave rises at most, beside its second, smaller sine.
double waveAmplitude(double side, double level);

/// The surface from left to right, a little wider than the square, with the level's height at
/// `square.bottom() - side * level`.
std::array<QPointF, 49> wavePoints(const QRectF& square, double level, double time);

} // namespace tidewright
