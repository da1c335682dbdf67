#include "app/controls/OrbLiquid.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tidewright {

namespace {

constexpr double settlingTime = 0.9; // seconds
constexpr double omega = 2 * std::numbers::pi / settlingTime;
constexpr double overhang = 2; // pixels on each side

} // namespace

double LevelTransition::levelAt(double time) const {
    const double elapsed = time - began;
    if (elapsed <= 0)
        return from;
    const double progress = 1 - (1 + omega * elapsed) * std::exp(-omega * elapsed);
    return from + std::min(progress, 1.0) * (to - from);
}

double waveAmplitude(double side, double level) {
    return side * 0.018 * (1 - std::abs(level - 0.5) * 1.2);
}

std::array<QPointF, 49> wavePoints(const QRectF& square, double level, double time) {
    const double side = square.width();
    const double shown = std::clamp(level, 0.0, 1.0);
    const double height = square.bottom() - side * shown;
    const double amplitude = waveAmplitude(side, shown);

    std::array<QPointF, 49> points;
    for (std::size_t index = 0; index < points.size(); ++index) {
        const double part = static_cast<double>(index) / static_cast<double>(points.size() - 1);
        const double x = square.left() - overhang + (side + 2 * overhang) * part;
        const double u = (x - square.center().x()) / (side / 2);
        const double wave = std::sin(1.4 * time + 4.6 * u) + 0.5 * std::sin(9 * u - 2.1 * time);
        points[index] = {x, height + amplitude * wave};
    }
    return points;
}

} // namespace tidewright
