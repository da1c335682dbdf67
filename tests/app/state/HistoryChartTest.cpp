#include "app/state/HistoryChart.h"

#include "core/support/Bytes.h"

#include <gmock/gmock.h>
#include <unicode/locid.h>

#include <cmath>
#include <numeric>
#include <random>

namespace tidewright {
namespace {

using namespace std::chrono_literals;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Le;

constexpr auto utc = "UTC";
constexpr double nearly = 1e-9;
constexpr HistoryChart::Room room{3.0 / 800, 28.0 / 800, 70.0 / 800};

HistoryEntry entry(Date date, double gigabytes) {
    HistoryEntry entry;
    entry.date = date;
    entry.estimatedFreed = std::llround(gigabytes * 1e9);
    return entry;
}

Date noon(int day) {
    return Date(std::chrono::sys_days(std::chrono::year{2026} / 3 / 1)) + 24h * day + 12h;
}

/// A gigabyte at noon of each of these days, counted from 1 March 2026.
std::vector<HistoryEntry> onDays(const std::vector<int>& days) {
    std::vector<HistoryEntry> entries;
    for (const int day : days)
        entries.push_back(entry(noon(day), 1));
    return entries;
}

double middle(const HistoryChart::Bar& bar) { return bar.left + bar.width / 2; }

std::vector<std::string> textsOf(const std::vector<ChartTick>& ticks) {
    std::vector<std::string> texts;
    for (const ChartTick& tick : ticks)
        texts.push_back(tick.text.toStdString());
    return texts;
}

class HistoryChartTest : public testing::Test {
protected:
    static void speak(const char* name) {
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale::setDefault(icu::Locale(name), status);
    }
    HistoryChartTest() { speak("en_GB"); }
    ~HistoryChartTest() override { speak(m_before.getName()); }

    icu::Locale m_before = icu::Locale::getDefault();
};

TEST_F(HistoryChartTest, NothingIsNoChart) {
    const HistoryChart chart = HistoryChart::of({}, room, utc);
    EXPECT_THAT(chart.bars, IsEmpty());
    EXPECT_THAT(chart.dates, IsEmpty());
    EXPECT_THAT(chart.sizes, IsEmpty());
    EXPECT_FALSE(chart.barAt(0.5, 0.5, 1));
}

// Days

TEST_F(HistoryChartTest, DaysWithoutCleanupsTakeTheirRoom) {
    for (const std::vector<int>& days : {std::vector{0, 1, 4}, {4, 0, 1}, {0, 100, 1'000}}) {
        const HistoryChart chart = HistoryChart::of(onDays(days), room, utc);
        const auto [first, last] = std::ranges::minmax(days);
        const auto bar = [&](int day) {
            return chart
                .bars[static_cast<std::size_t>(std::ranges::find(days, day) - days.begin())];
        };
        const double step = (middle(bar(last)) - middle(bar(first))) / (last - first);
        for (const int day : days)
            EXPECT_NEAR(middle(bar(day)), middle(bar(first)) + step * (day - first), nearly) << day;
        EXPECT_NEAR(middle(bar(first)), 1 - middle(bar(last)), nearly);
    }
}

TEST_F(HistoryChartTest, BarsOfOneDayStandOnEachOtherByTime) {
    const std::vector entries{entry(noon(0) + 2h, 4), entry(noon(1), 1), entry(noon(0), 1),
                              entry(noon(0) + 1h, 0), entry(noon(0) + 1h + 1min, 3)};
    const HistoryChart chart = HistoryChart::of(entries, room, utc);
    ASSERT_EQ(chart.sizes.back().text, QStringLiteral("8"));
    const auto expectBar = [&](std::size_t position, double bottom, double height) {
        EXPECT_NEAR(chart.bars[position].bottom * 8, bottom, nearly) << position;
        EXPECT_NEAR(chart.bars[position].height * 8, height, nearly) << position;
    };
    expectBar(2, 0, 1);
    expectBar(3, 1, 0);
    expectBar(4, 1, 3);
    expectBar(0, 4, 4);
    expectBar(1, 0, 1);
    for (const std::size_t position : {2U, 3U, 4U})
        EXPECT_EQ(chart.bars[position].left, chart.bars[0].left);
    EXPECT_GT(chart.bars[1].left, chart.bars[0].left);
}

TEST_F(HistoryChartTest, TheDayIsThatOfTheZone) {
    const Date midnight = noon(0) + 12h;
    const std::vector entries{entry(midnight - 30min, 1), entry(midnight + 30min, 1)};
    const HistoryChart apart = HistoryChart::of(entries, room, utc);
    EXPECT_LT(apart.bars[0].left, apart.bars[1].left);
    const HistoryChart together = HistoryChart::of(entries, room, "Europe/Berlin");
    EXPECT_EQ(together.bars[0].left, together.bars[1].left);
    EXPECT_GT(together.bars[1].bottom, 0);
}

TEST_F(HistoryChartTest, TheDaysOfAClockChangeAreAsLongAsOthers) {
    // Just after midnight of 27 to 31 March; clocks go forward on the 29th.
    const Date midnight = noon(26) - 13h;
    const std::vector entries{entry(midnight + 1min, 1), entry(midnight + 24h + 1min, 1),
                              entry(midnight + 48h + 1min, 1), entry(midnight + 71h + 1min, 1),
                              entry(midnight + 95h + 1min, 1)};
    const HistoryChart chart = HistoryChart::of(entries, room, "Europe/Berlin");
    for (std::size_t i = 1; i < entries.size(); ++i)
        EXPECT_NEAR(chart.bars[i].left - chart.bars[i - 1].left,
                    chart.bars[1].left - chart.bars[0].left, nearly);
    EXPECT_GT(chart.bars[1].left, chart.bars[0].left);
}

TEST_F(HistoryChartTest, BarsKeepTheirLimitsAndStayInside) {
    std::vector<int> thousand(1'000);
    std::iota(thousand.begin(), thousand.end(), 0);
    std::vector<int> scattered;
    std::mt19937 random(7);
    for (int i = 0; i < 200; ++i)
        scattered.push_back(static_cast<int>(random() % 3'000));
    for (const std::vector<int>& days : {std::vector{0},
                                         {0, 0},
                                         {0, 1},
                                         {0, 2},
                                         {0, 1'095},
                                         {0, 1, 1'095},
                                         {0, 3, 6, 9, 12},
                                         thousand,
                                         scattered})
        for (const double width : {60.0, 200.0, 620.0, 2'000.0}) {
            const HistoryChart chart =
                HistoryChart::of(onDays(days), {3 / width, 28 / width, 70 / width}, utc);
            std::vector<double> lefts;
            for (const HistoryChart::Bar& bar : chart.bars) {
                EXPECT_GE(bar.left, -nearly);
                EXPECT_LE(bar.left + bar.width, 1 + nearly);
                EXPECT_GE(bar.width * width, 3 - nearly);
                EXPECT_LE(bar.width * width, 28 + nearly);
                EXPECT_LE(bar.bottom + bar.height, 1 + nearly);
                lefts.push_back(bar.left);
            }
            std::ranges::sort(lefts);
            for (std::size_t i = 1; i < lefts.size(); ++i)
                if (lefts[i] > lefts[i - 1] && chart.bars[0].width * width > 3 + nearly) {
                    EXPECT_GT(lefts[i] - lefts[i - 1], chart.bars[0].width);
                }
        }
}

// Sizes

TEST_F(HistoryChartTest, TheGridSuitsTheSizes) {
    const std::vector<std::pair<double, std::vector<std::string>>> cases{
        {0, {"0.0", "0.2", "0.4", "0.6", "0.8", "1.0"}},
        {5, {"0", "1", "2", "3", "4", "5"}},
        {5.01, {"0", "2", "4", "6"}},
        {8.4, {"0", "2", "4", "6", "8", "10"}},
        {33.15, {"0", "10", "20", "30", "40"}},
        {212, {"0", "50", "100", "150", "200", "250"}},
        {0.3, {"0.0", "0.1", "0.2", "0.3"}},
        {0.0021, {"0.0000", "0.0005", "0.0010", "0.0015", "0.0020", "0.0025"}},
        {1'500'000, {"0", "500000", "1000000", "1500000"}},
        {0.000000001, {"0.000000", "0.000001"}},
    };
    for (const auto& [size, texts] : cases) {
        const HistoryChart chart = HistoryChart::of({entry(noon(0), size)}, room, utc);
        EXPECT_EQ(textsOf(chart.sizes), texts) << size;
        EXPECT_EQ(chart.sizes.front().place, 0);
        EXPECT_EQ(chart.sizes.back().place, 1);
    }
}

TEST_F(HistoryChartTest, EverySizeHasARoundGridThatItMostlyFills) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> power(-5.0, 8.0);
    for (int i = 0; i < 2'000; ++i) {
        const double size = std::pow(10, power(random));
        const HistoryChart chart = HistoryChart::of({entry(noon(0), size)}, room, utc);
        const std::size_t steps = chart.sizes.size() - 1;
        EXPECT_GE(steps, 2U) << size;
        EXPECT_LE(steps, 5U) << size;
        const double step = chart.sizes[1].text.toDouble();
        const double factor = step / std::pow(10, std::floor(std::log10(step) + nearly));
        EXPECT_TRUE(std::abs(factor - 1) < 1e-6 || std::abs(factor - 2) < 1e-6 ||
                    std::abs(factor - 5) < 1e-6)
            << step;
        EXPECT_GT(chart.bars[0].height, 0.5) << size;
        EXPECT_LE(chart.bars[0].height, 1 + nearly) << size;
        EXPECT_NEAR(chart.bars[0].height * step * static_cast<double>(steps), size,
                    1e-6 * size + 1e-9);
        for (std::size_t each = 0; each <= steps; ++each)
            EXPECT_NEAR(chart.sizes[each].text.toDouble(), step * static_cast<double>(each),
                        step * 1e-6);
    }
}

TEST_F(HistoryChartTest, TheLargerOfMeasureAndEstimateCounts) {
    std::vector entries{entry(noon(0), 4), entry(noon(1), 4), entry(noon(2), 0), entry(noon(3), 0)};
    entries[0].measuredGain = 2 * gigabyte;
    entries[1].measuredGain = 5 * gigabyte;
    entries[2].measuredGain = -9 * gigabyte;
    entries[3].measuredGain = -9 * gigabyte;
    entries[3].estimatedFreed = -1 * gigabyte;
    const HistoryChart chart = HistoryChart::of(entries, room, utc);
    EXPECT_NEAR(chart.bars[0].height, 4.0 / 5, nearly);
    EXPECT_NEAR(chart.bars[1].height, 1, nearly);
    EXPECT_EQ(chart.bars[2].height, 0);
    EXPECT_EQ(chart.bars[3].height, 0);
}

TEST_F(HistoryChartTest, TheLargestNumbersFit) {
    std::vector entries = onDays({0, 0, 0, 1});
    for (HistoryEntry& each : entries)
        each.estimatedFreed = std::numeric_limits<Int64>::max();
    const HistoryChart chart = HistoryChart::of(entries, room, utc);
    EXPECT_NEAR(chart.bars[0].height * 3, chart.bars[2].bottom + chart.bars[2].height, nearly);
    EXPECT_THAT(textsOf(chart.sizes),
                ElementsAre("0", "10000000000", "20000000000", "30000000000"));
    EXPECT_LE(chart.bars[2].bottom + chart.bars[2].height, 1 + nearly);
}

// Dates

TEST_F(HistoryChartTest, DatesAreToldAsTheSpanAsks) {
    const std::vector<std::pair<std::vector<int>, std::vector<std::string>>> cases{
        {{0}, {"1 Mar"}},
        {{0, 2}, {"1 Mar", "2 Mar", "3 Mar"}},
        {{0, 14}, {"1 Mar", "3 Mar", "5 Mar", "7 Mar", "9 Mar", "11 Mar", "13 Mar", "15 Mar"}},
        {{0, 60},
         {"1 Mar", "8 Mar", "15 Mar", "22 Mar", "29 Mar", "5 Apr", "12 Apr", "19 Apr", "26 Apr"}},
        {{0, 300},
         {"1 Mar", "1 Apr", "1 May", "1 Jun", "1 Jul", "1 Aug", "1 Sept", "1 Oct", "1 Nov",
          "1 Dec"}},
        {{0, 1'095}, {"Jul 2026", "Jan 2027", "Jul 2027", "Jan 2028", "Jul 2028", "Jan 2029"}},
        {{0, 10'000}, {"2030", "2035", "2040", "2045", "2050"}},
    };
    for (const auto& [days, texts] : cases)
        EXPECT_EQ(textsOf(HistoryChart::of(onDays(days), room, utc).dates), texts);
}

TEST_F(HistoryChartTest, DatesStandUnderTheirDays) {
    const HistoryChart days = HistoryChart::of(onDays({0, 2}), room, utc);
    EXPECT_NEAR(days.dates.front().place, middle(days.bars[0]), nearly);
    EXPECT_NEAR(days.dates.back().place, middle(days.bars[1]), nearly);
    const HistoryChart months = HistoryChart::of(onDays({0, 31, 300}), room, utc);
    EXPECT_NEAR(months.dates[1].place, middle(months.bars[1]), nearly); // 1 April
}

TEST_F(HistoryChartTest, DatesNeverOverlap) {
    std::mt19937 random(5);
    for (int i = 0; i < 2'000; ++i) {
        const int span = static_cast<int>(random() % (1U << random() % 14));
        const int start = static_cast<int>(random() % 1'000);
        const double width = 50 + static_cast<int>(random() % 1'500);
        const double date = std::min(1.0, 70 / width);
        const HistoryChart chart =
            HistoryChart::of(onDays({start, start + span}),
                             {std::min(1.0, 3 / width), std::min(1.0, 28 / width), date}, utc);
        ASSERT_GE(chart.dates.size(), 1U) << span << " " << width;
        for (std::size_t each = 0; each < chart.dates.size(); ++each) {
            EXPECT_GE(chart.dates[each].place, 0);
            EXPECT_LE(chart.dates[each].place, 1);
            if (each > 0) {
                EXPECT_GE(chart.dates[each].place - chart.dates[each - 1].place, date - nearly)
                    << span << " " << width;
            }
        }
    }
}

TEST_F(HistoryChartTest, DatesAreOfTheUsersLanguage) {
    speak("de_DE");
    EXPECT_THAT(textsOf(HistoryChart::of(onDays({0, 1}), room, utc).dates),
                ElementsAre("1. März", "2. März"));
    EXPECT_TRUE(HistoryChart::sampleDates().contains(QStringLiteral("28. März")));
    EXPECT_TRUE(HistoryChart::sampleDates().contains(QStringLiteral("Sept. 2028")));
}

TEST_F(HistoryChartTest, DatesOfNoCalendarAreShownToo) {
    for (const auto& [first, last] :
         {std::pair{Date::min(), Date::max()}, {Date(), Date::max()}, {Date::min(), Date()}}) {
        const HistoryChart chart = HistoryChart::of({entry(first, 1), entry(last, 1)}, room, utc);
        EXPECT_LT(chart.bars[0].left, chart.bars[1].left);
        EXPECT_LE(chart.bars[1].left + chart.bars[1].width, 1 + nearly);
        EXPECT_LE(chart.dates.size(), 12U);
    }
}

TEST_F(HistoryChartTest, AThousandCleanupsHaveABarEach) {
    std::vector<HistoryEntry> entries;
    std::mt19937 random(3);
    for (int i = 0; i < 1'000; ++i)
        entries.push_back(
            entry(noon(static_cast<int>(random() % 900)), 1 + static_cast<int>(random() % 30)));
    const HistoryChart chart = HistoryChart::of(entries, room, utc);
    ASSERT_EQ(chart.bars.size(), 1'000U);
    double sum = 0;
    for (const HistoryChart::Bar& bar : chart.bars)
        sum += bar.height;
    double gigabytes = 0;
    for (const HistoryEntry& each : entries)
        gigabytes += static_cast<double>(each.freed()) / 1e9;
    EXPECT_NEAR(sum * chart.sizes.back().text.toDouble(), gigabytes, 1e-6);
}

// The pointer

TEST_F(HistoryChartTest, ThePointerMeansTheNearestBar) {
    const std::vector entries{entry(noon(0), 2), entry(noon(0) + 1h, 2), entry(noon(3), 1)};
    const HistoryChart chart = HistoryChart::of(entries, room, utc);
    const double first = middle(chart.bars[0]);
    const double last = middle(chart.bars[2]);
    const double half = chart.bars[0].width / 2;
    const auto expectBar = [&](double x, double y, std::optional<std::size_t> position) {
        EXPECT_EQ(chart.barAt(x, y, 0.01), position) << x << " " << y;
    };
    expectBar(first, 0.1, 0);
    expectBar(first, 0.9, 1);
    expectBar(first, 2, 1);
    expectBar(first, -1, 0);
    expectBar(first - half + nearly, 0.1, 0);
    expectBar(first + half + 0.005, 0.1, std::nullopt); // the bar is wider than the reach
    expectBar(last, 0.9, 2);
    expectBar((first + last) / 2, 0.1, std::nullopt);
    EXPECT_EQ(chart.barAt(first + half + 0.005, 0.1, 0.1), 0U);
}

} // namespace
} // namespace tidewright
