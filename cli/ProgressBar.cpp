#include "cli/ProgressBar.h"

#include "core/support/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace tidewright {

namespace {

constexpr std::size_t barCells = 24;
constexpr std::size_t shortBarCells = 8;
constexpr std::size_t columnsForLongBar = 72;

std::string repeated(std::string_view text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i)
        result += text;
    return result;
}

} // namespace

std::string progressLine(const ScanProgress& progress, std::size_t columns) {
    const double fraction = std::clamp(progress.fraction, 0.0, 1.0);
    const std::size_t cells = columns < columnsForLongBar ? shortBarCells : barCells;
    const auto filled =
        static_cast<std::size_t>(std::lround(fraction * static_cast<double>(cells)));
    const std::string line =
        fmt::format("{}{} {:3} %  {}", repeated("█", filled), repeated("░", cells - filled),
                    std::lround(fraction * 100), printable(progress.message));
    return elidedMiddle(line, columns);
}

} // namespace tidewright
