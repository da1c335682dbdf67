#include "app/state/HistoryChart.h"

#include "app/state/RowModel.h"
#include "core/support/Bytes.h"
#include "core/support/CalendarDays.h"
#include "core/support/DateText.h"

#include <fmt/format.h>

#include <cmath>
#include <map>
#include <numeric>

namespace tidewright {

namespace {

using std::chrono::sys_days;

constexpr double shareOfGap = 0.6;     ///< that a bar takes of the way to the next
constexpr double widestOfAll = 0.25;   ///< of the plot
constexpr double mostSizeSteps = 5;    ///< of the grid
constexpr double leastSizeStep = 1e-6; ///< gigabytes
constexpr double tiny = 1e-9;          ///< what calculating adds or takes

constexpr int monthsOfYear = 12;

constexpr sys_days firstDay{std::chrono::year{1} / 1 / 1};
constexpr sys_days lastDay{std::chrono::year{9999} / 12 / 31};

int daysBetween(sys_days from, sys_days to) { return static_cast<int>((to - from).count()); }

double gigabytesOf(const HistoryEntry& entry) {
    return static_cast<double>(std::max<Int64>(entry.freed(), 0)) / static_cast<double>(gigabyte);
}

std::vector<sys_days> daysOf(const std::vector<HistoryEntry>& entries,
                             const std::optional<std::string>& timeZone) {
    std::vector<Date> dates;
    for (const HistoryEntry& entry : entries)
        dates.push_back(entry.date);
    std::vector<sys_days> days = calendarDays(dates, timeZone);
    for (sys_days& day : days)
        day = std::clamp(day, firstDay, lastDay);
    return days;
}

/// The days from the first to the last, each with the same room.
struct DayAxis {
    sys_days first;
    int span = 0; ///< days from the first to the last
    double barWidth = 0;
    double margin = 0; ///< from the plot's edges to the middle of the outermost days

    DayAxis(std::vector<sys_days> days, const HistoryChart::Room& room) {
        std::ranges::sort(days);
        first = days.front();
        span = daysBetween(first, days.back());
        int leastGap = span;
        for (std::size_t i = 1; i < days.size(); ++i)
            if (days[i] != days[i - 1])
                leastGap = std::min(leastGap, daysBetween(days[i - 1], days[i]));
        const double widest = std::min(room.widestBar, widestOfAll);
        const double dayRoom = 1.0 / (span + 1);
        barWidth = span == 0 ? widest
                             : std::clamp(shareOfGap * leastGap * dayRoom,
                                          std::min(room.narrowestBar, widest), widest);
        margin = std::max(dayRoom, barWidth) / 2;
    }

    double dayStep() const { return span == 0 ? 1 : (1 - 2 * margin) / span; }
    double place(sys_days day) const {
        return span == 0 ? 0.5 : margin + daysBetween(first, day) * dayStep();
    }
};

/// From one label to the next.
struct DateStep {
    int days = 0;
    int months = 0; ///< where there are no days
};

DateStep dateStep(double dayStep, double room) {
    for (const int days : {1, 2, 7, 14})
        if (days * dayStep >= room)
            return {.days = days};
    for (const int months : {1, 2, 3, 6})
        if (28 * months * dayStep >= room)
            return {.months = months};
    for (int years = 1;; years *= 10)
        for (const int factor : {1, 2, 5})
            if (365 * factor * years * dayStep >= room || years >= 10'000)
                return {.months = factor * years * monthsOfYear};
}

/// The days that are labelled: with steps of months, their first.
std::vector<sys_days> labelledDays(const DayAxis& axis, const DateStep& step) {
    const sys_days last = axis.first + std::chrono::days(axis.span);
    std::vector<sys_days> labelled;
    if (step.months == 0)
        for (sys_days day = axis.first; day <= last; day += std::chrono::days(step.days))
            labelled.push_back(day);
    const std::chrono::year_month_day first(axis.first);
    const int month = static_cast<int>(first.year()) * monthsOfYear +
                      static_cast<int>(static_cast<unsigned>(first.month())) - 1;
    for (int each = month - month % std::max(step.months, 1); step.months > 0;
         each += step.months) {
        const sys_days day{std::chrono::year(each / monthsOfYear) /
                           std::chrono::month(static_cast<unsigned>(each % monthsOfYear + 1)) / 1};
        if (day > last)
            break;
        if (day >= axis.first)
            labelled.push_back(day);
    }
    if (labelled.empty()) // there is no room
        labelled.push_back(axis.first);
    return labelled;
}

DayForm formOf(const DayAxis& axis, const DateStep& step) {
    if (step.months >= monthsOfYear)
        return DayForm::year;
    return axis.span < 365 ? DayForm::dayAndMonth : DayForm::monthAndYear;
}

std::vector<ChartTick> dateTicks(const DayAxis& axis, double room) {
    const DateStep step = dateStep(axis.dayStep(), room);
    const std::vector<sys_days> days = labelledDays(axis, step);
    const std::vector<std::string> texts = dayTexts(days, formOf(axis, step));
    std::vector<ChartTick> ticks;
    for (std::size_t i = 0; i < days.size(); ++i)
        ticks.push_back({axis.place(days[i]), shownText(texts[i])});
    return ticks;
}

/// Round steps, of 1, 2 or 5 times a power of ten, up to a height that holds the highest stack.
struct SizeAxis {
    double step = 0; ///< gigabytes
    int steps = 0;
    int decimals = 0;

    explicit SizeAxis(double highest) {
        const double shown = highest > 0 ? highest : 1;
        const double wanted = std::max(shown / mostSizeSteps, leastSizeStep) * (1 - tiny);
        int power = static_cast<int>(std::floor(std::log10(wanted)));
        int factor = 10;
        for (const int each : {5, 2, 1})
            if (each * std::pow(10, power) >= wanted)
                factor = each;
        if (factor == 10) {
            factor = 1;
            ++power;
        }
        step = factor * std::pow(10, power);
        steps = static_cast<int>(std::ceil(shown / step - tiny));
        decimals = std::max(0, -power);
    }

    double top() const { return step * steps; }
};

std::vector<ChartTick> sizeTicks(const SizeAxis& axis) {
    std::vector<ChartTick> ticks;
    for (int i = 0; i <= axis.steps; ++i)
        ticks.push_back({static_cast<double>(i) / axis.steps,
                         shownText(fmt::format("{:.{}f}", i * axis.step, axis.decimals))});
    return ticks;
}

} // namespace

HistoryChart HistoryChart::of(const std::vector<HistoryEntry>& entries,
                              const Room& room,
                              const std::optional<std::string>& timeZone) {
    HistoryChart chart;
    if (entries.empty())
        return chart;
    const std::vector<sys_days> days = daysOf(entries, timeZone);
    const DayAxis dayAxis(days, room);
    std::vector<std::size_t> byDate(entries.size());
    std::iota(byDate.begin(), byDate.end(), std::size_t{0});
    std::ranges::stable_sort(byDate, {}, [&](std::size_t each) { return entries[each].date; });

    std::map<sys_days, double> stacks;
    chart.bars.resize(entries.size());
    for (const std::size_t each : byDate) {
        double& stack = stacks[days[each]];
        const double height = gigabytesOf(entries[each]);
        chart.bars[each] = {.left = dayAxis.place(days[each]) - dayAxis.barWidth / 2,
                            .width = dayAxis.barWidth,
                            .bottom = stack,
                            .height = height};
        stack += height;
    }
    const auto highest = std::ranges::max_element(
        stacks, {}, [](const auto& dayAndHeight) { return dayAndHeight.second; });
    const SizeAxis sizeAxis(highest->second);
    for (Bar& bar : chart.bars) {
        bar.bottom /= sizeAxis.top();
        bar.height /= sizeAxis.top();
    }
    chart.dates = dateTicks(dayAxis, room.date);
    chart.sizes = sizeTicks(sizeAxis);
    return chart;
}

std::optional<std::size_t> HistoryChart::barAt(double x, double y, double reach) const {
    const auto distance = [&](const Bar& bar) { return std::abs(bar.left + bar.width / 2 - x); };
    const auto nearest = std::ranges::min_element(bars, {}, distance);
    if (nearest == bars.end() || distance(*nearest) > std::max(reach, nearest->width / 2))
        return std::nullopt;
    const auto above = [&](const Bar& bar) {
        return bar.left == nearest->left
                   ? std::max({bar.bottom - y, y - bar.bottom - bar.height, 0.0})
                   : HUGE_VAL;
    };
    return static_cast<std::size_t>(std::ranges::min_element(bars, {}, above) - bars.begin());
}

QStringList HistoryChart::sampleDates() {
    std::vector<sys_days> days;
    for (unsigned month = 1; month <= monthsOfYear; ++month)
        days.emplace_back(std::chrono::year{2028} / std::chrono::month{month} / 28);
    QStringList samples;
    for (const DayForm form : {DayForm::dayAndMonth, DayForm::monthAndYear})
        for (const std::string& text : dayTexts(days, form))
            samples.append(shownText(text));
    return samples;
}

} // namespace tidewright
