#include "core/support/Bytes.h"

#include <fmt/format.h>

#include <array>

namespace tidewright {

namespace {

struct Unit {
    const char* name;
    std::uint64_t bytes;
    int decimals;
};

constexpr std::array units{
    Unit{"KB", 1'000, 0},
    Unit{"MB", 1'000'000, 1},
    Unit{"GB", 1'000'000'000, 2},
    Unit{"TB", 1'000'000'000'000, 2},
    Unit{"PB", 1'000'000'000'000'000, 2},
    Unit{"EB", 1'000'000'000'000'000'000, 2},
};

std::uint64_t scaleOf(int decimals) { return decimals == 0 ? 1 : decimals == 1 ? 10 : 100; }

/// `bytes` in steps of the unit's last shown decimal, rounded half up.
std::uint64_t roundedSteps(std::uint64_t bytes, const Unit& unit) {
    const std::uint64_t step = unit.bytes / scaleOf(unit.decimals);
    return bytes / step + (bytes % step >= step - step / 2 ? 1 : 0);
}

std::string withoutTrailingZeros(std::uint64_t steps, int decimals) {
    const std::uint64_t scale = scaleOf(decimals);
    if (steps % scale == 0)
        return fmt::format("{}", steps / scale);
    std::string text = fmt::format("{}.{:0{}}", steps / scale, steps % scale, decimals);
    while (text.back() == '0')
        text.pop_back();
    return text;
}

std::string magnitudeText(std::uint64_t bytes) {
    if (bytes == 1)
        return "1 byte";
    if (bytes < 1'000)
        return fmt::format("{} bytes", bytes);
    for (const Unit& unit : units) {
        const std::uint64_t steps = roundedSteps(bytes, unit);
        if (steps < 1'000 * scaleOf(unit.decimals) || &unit == &units.back())
            return withoutTrailingZeros(steps, unit.decimals) + " " + unit.name;
    }
    return {}; // not reached: the last unit takes everything
}

} // namespace

std::string formattedBytes(Int64 bytes) {
    if (bytes == 0)
        return "Zero KB";
    if (bytes < 0)
        return fmt::format("-{}", magnitudeText(0 - static_cast<std::uint64_t>(bytes)));
    return magnitudeText(static_cast<std::uint64_t>(bytes));
}

} // namespace tidewright
