#include "app/controls/TreemapLayout.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cmath>
#include <functional>
#include <numeric>
#include <random>
#include <set>
#include <string>

namespace tidewright {
namespace {

using testing::ElementsAre;
using Weights = std::vector<qint64>;

constexpr QRectF wide(24, 70, 880, 180);

double areaOf(const QRectF& place) { return place.width() * place.height(); }

double ratioOf(const QRectF& place) {
    return std::max(place.width(), place.height()) / std::min(place.width(), place.height());
}

double overlap(const QRectF& one, const QRectF& other) { return areaOf(one & other); }

/// Also of one without any area.
bool isInside(const QRectF& place, const QRectF& area) {
    constexpr double rounding = 1e-9;
    return place.left() >= area.left() - rounding && place.right() <= area.right() + rounding &&
           place.top() >= area.top() - rounding && place.bottom() <= area.bottom() + rounding;
}

double sumOf(const Weights& weights) {
    return std::accumulate(weights.begin(), weights.end(), 0.0, [](double sum, qint64 weight) {
        return sum + static_cast<double>(std::max<qint64>(weight, 0));
    });
}

/// What is wrong with a layout, empty where nothing is.
std::string faults(const Weights& weights, const QRectF& area, const TreemapLayout& layout) {
    std::string found;
    const auto wrong = [&](const std::string& what) { found += what + "\n"; };
    if (layout.places.size() != weights.size())
        return "not one place for each weight";
    const double total = sumOf(weights);
    const double tolerance = 1e-9 * areaOf(area);
    double sum = 0;
    for (std::size_t i = 0; i < weights.size(); ++i) {
        const QRectF& place = layout.places[i];
        if (weights[i] <= 0) {
            if (!place.isNull())
                wrong(std::to_string(i) + " has a place but no weight");
            continue;
        }
        sum += areaOf(place);
        const double share = static_cast<double>(weights[i]) / total;
        if (std::abs(areaOf(place) - share * areaOf(area)) > tolerance)
            wrong(std::to_string(i) + " has not its share");
        if (place.width() < 0 || place.height() < 0 || !isInside(place, area))
            wrong(std::to_string(i) + " is outside");
    }
    if (total > 0 && std::abs(sum - areaOf(area)) > tolerance)
        wrong("areas don't add up");
    // The heaviest places; those that hide behind each other would be seen there first.
    const std::size_t compared = std::min<std::size_t>(layout.order.size(), 400);
    for (std::size_t i = 0; i < compared; ++i)
        for (std::size_t j = 0; j < i; ++j)
            if (overlap(layout.places[static_cast<std::size_t>(layout.order[i])],
                        layout.places[static_cast<std::size_t>(layout.order[j])]) > 1e-6)
                wrong(std::to_string(layout.order[i]) + " overlaps " +
                      std::to_string(layout.order[j]));
    return found;
}

/// The mean aspect ratio of the same weights in strips side by side.
double ratioOfSlices(const Weights& weights, const QRectF& area) {
    double sum = 0;
    for (const qint64 weight : weights) {
        const double width = area.width() * static_cast<double>(weight) / sumOf(weights);
        sum += ratioOf({0, 0, width, area.height()});
    }
    return sum / static_cast<double>(weights.size());
}

double meanRatio(const TreemapLayout& layout) {
    double sum = 0;
    for (const QRectF& place : layout.places)
        sum += ratioOf(place);
    return sum / static_cast<double>(layout.places.size());
}

/// Of all kinds that disks have: alike, far apart, and some without any bytes.
Weights randomWeights(std::mt19937& random, int most) {
    const auto below = [&](int limit) {
        return std::uniform_int_distribution<int>(0, limit - 1)(random);
    };
    Weights weights(static_cast<std::size_t>(1 + below(most)));
    const int kind = below(4);
    for (qint64& weight : weights) {
        if (kind == 0)
            weight = 1'000'000 + below(1'000'000);
        else if (kind == 1)
            weight = static_cast<qint64>(std::exp(below(1000) / 36.0)); // up to about 1 TB
        else if (kind == 2)
            weight = below(4) - 1;
        else
            weight = 1'000'000'000'000 / (1 + below(10'000));
    }
    return weights;
}

// --- The paper's own example

TEST(TreemapLayoutTest, ExampleOfThePaperIsLaidOutAsThere) {
    const TreemapLayout layout = treemapLayout({6, 6, 4, 3, 2, 2, 1}, {0, 0, 6, 4});
    const std::vector<QRectF> wanted{{0, 0, 3, 2},
                                     {0, 2, 3, 2},
                                     {3, 0, 12 / 7.0, 7 / 3.0},
                                     {3 + 12 / 7.0, 0, 9 / 7.0, 7 / 3.0},
                                     {3, 7 / 3.0, 1.2, 5 / 3.0},
                                     {4.2, 7 / 3.0, 1.2, 5 / 3.0},
                                     {5.4, 7 / 3.0, 0.6, 5 / 3.0}};
    ASSERT_EQ(layout.places.size(), wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        EXPECT_NEAR(layout.places[i].x(), wanted[i].x(), 1e-9) << i;
        EXPECT_NEAR(layout.places[i].y(), wanted[i].y(), 1e-9) << i;
        EXPECT_NEAR(layout.places[i].right(), wanted[i].right(), 1e-9) << i;
        EXPECT_NEAR(layout.places[i].bottom(), wanted[i].bottom(), 1e-9) << i;
    }
}

// --- Of any weights

TEST(TreemapLayoutTest, HoldsForRandomWeightsInRandomAreas) {
    std::mt19937 random(20'000);
    std::uniform_real_distribution<double> side(0.5, 2000);
    for (int i = 0; i < 400; ++i) {
        const Weights weights = randomWeights(random, i % 20 == 0 ? 5000 : 120);
        const QRectF area(side(random) - 1000, side(random) - 1000, side(random), side(random));
        const TreemapLayout layout = treemapLayout(weights, area);
        ASSERT_EQ(faults(weights, area, layout), "") << "round " << i;
        EXPECT_TRUE(layout.rest.isNull());
        EXPECT_EQ(layout.shown, static_cast<int>(layout.order.size()));
    }
}

TEST(TreemapLayoutTest, AspectRatiosAreNearerToSquaresThanStripsAre) {
    std::mt19937 random(7);
    for (int i = 0; i < 200; ++i) {
        Weights weights(static_cast<std::size_t>(8 + i));
        for (qint64& weight : weights)
            weight = std::uniform_int_distribution<qint64>(1'000, 100'000)(random);
        const TreemapLayout layout = treemapLayout(weights, wide);
        EXPECT_LT(meanRatio(layout), 3) << i;
        if (weights.size() >= 16) {
            EXPECT_LT(meanRatio(layout), ratioOfSlices(weights, wide)) << i;
        }
    }
}

TEST(TreemapLayoutTest, EqualWeightsAreNearlySquares) {
    for (const int count : {4, 12, 50, 333, 1000}) {
        const TreemapLayout layout =
            treemapLayout(Weights(static_cast<std::size_t>(count), 5), wide);
        EXPECT_EQ(faults(Weights(static_cast<std::size_t>(count), 5), wide, layout), "");
        EXPECT_LT(meanRatio(layout), 1.7) << count;
        for (const QRectF& place : layout.places)
            EXPECT_LT(ratioOf(place), 3) << count;
    }
}

TEST(TreemapLayoutTest, HeavierComesFirstAndEqualsAsTheyCame) {
    const TreemapLayout layout = treemapLayout({3, 9, 0, 3, -5, 20}, wide);
    EXPECT_THAT(layout.order, ElementsAre(5, 1, 0, 3));
    EXPECT_EQ(layout.places[5].topLeft(), wide.topLeft());
    EXPECT_TRUE(layout.places[2].isNull());
    EXPECT_TRUE(layout.places[4].isNull());
}

TEST(TreemapLayoutTest, IsTheSameEachTimeAndInAnyOrder) {
    std::mt19937 random(3);
    Weights weights = randomWeights(random, 500);
    const TreemapLayout layout = treemapLayout(weights, wide);
    EXPECT_EQ(treemapLayout(weights, wide).places, layout.places);
    std::set<qint64> distinct(weights.begin(), weights.end());
    weights.assign(distinct.begin(), distinct.end());
    const TreemapLayout rising = treemapLayout(weights, wide);
    std::ranges::reverse(weights);
    std::vector<QRectF> falling = treemapLayout(weights, wide).places;
    std::ranges::reverse(falling);
    EXPECT_EQ(falling, rising.places);
}

// --- The ends

TEST(TreemapLayoutTest, NothingHasNoPlaces) {
    for (const Weights& nothing : {Weights{}, Weights{0, -1, 0}}) {
        const TreemapLayout layout = treemapLayout(nothing, wide, 4);
        EXPECT_EQ(faults(nothing, wide, layout), "");
        EXPECT_TRUE(layout.order.empty() && layout.rest.isNull() && layout.shown == 0);
    }
}

TEST(TreemapLayoutTest, OneFillsTheArea) {
    for (const qint64 weight : {qint64{1}, std::numeric_limits<qint64>::max()})
        EXPECT_THAT(treemapLayout({weight}, wide).places, ElementsAre(wide));
}

TEST(TreemapLayoutTest, EmptyAreaHasNoPlaces) {
    for (const QRectF& area :
         {QRectF(), QRectF(5, 5, 0, 100), QRectF(5, 5, 100, 0), QRectF(0, 0, -10, 20)})
        for (const QRectF& place : treemapLayout({5, 3, 1}, area, 4).places)
            EXPECT_TRUE(place.isNull());
}

TEST(TreemapLayoutTest, OneHugeWeightLeavesTheTinyOnesTheirShare) {
    Weights weights(5000, 1'000);
    weights[1234] = 2'000'000'000'000;
    const TreemapLayout layout = treemapLayout(weights, wide);
    EXPECT_EQ(faults(weights, wide, layout), "");
    EXPECT_EQ(layout.order.front(), 1234);
    EXPECT_GT(layout.places[1234].width(), 879);
    EXPECT_GT(layout.places[0].width(), 0);
}

TEST(TreemapLayoutTest, WeightsBeyondAllProportionAreStillInside) {
    Weights weights(50, 1);
    weights.push_back(std::numeric_limits<qint64>::max());
    weights.push_back(std::numeric_limits<qint64>::max());
    const TreemapLayout layout = treemapLayout(weights, wide, 4);
    EXPECT_EQ(faults(weights, wide, layout), "");
    EXPECT_EQ(layout.shown, 2);
}

TEST(TreemapLayoutTest, TenThousandAreQuick) {
    std::mt19937 random(1);
    Weights weights(10'000);
    for (qint64& weight : weights)
        weight = static_cast<qint64>(std::exp(std::uniform_real_distribution(0.0, 25.0)(random)));
    const TreemapLayout layout = treemapLayout(weights, wide, 4);
    EXPECT_EQ(faults(weights, wide, layout), "");
    // Doing it a hundred times would take minutes if it were not nearly linear.
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(treemapLayout(weights, wide, 4).shown, layout.shown);
}

// --- The rest

TEST(TreemapLayoutTest, ThinPlacesAreInTheRestAndNoOthersAre) {
    std::mt19937 random(11);
    constexpr double thinnest = 4;
    int withRest = 0;
    for (int i = 0; i < 200; ++i) {
        const Weights weights = randomWeights(random, 2000);
        const TreemapLayout layout = treemapLayout(weights, wide, thinnest);
        EXPECT_EQ(layout.places, treemapLayout(weights, wide).places);
        withRest += layout.rest.isNull() ? 0 : 1;
        bool hasThin = false;
        double inRest = 0;
        for (std::size_t at = 0; at < layout.order.size(); ++at) {
            const QRectF& place = layout.places[static_cast<std::size_t>(layout.order[at])];
            const bool isThin = std::min(place.width(), place.height()) < thinnest;
            if (at < static_cast<std::size_t>(layout.shown)) {
                EXPECT_FALSE(isThin);
                EXPECT_LT(overlap(place, layout.rest), 1e-6);
                continue;
            }
            hasThin = hasThin || isThin;
            inRest += areaOf(place);
            EXPECT_TRUE(isInside(place, layout.rest));
        }
        EXPECT_EQ(hasThin, static_cast<std::size_t>(layout.shown) < layout.order.size());
        EXPECT_NEAR(inRest, areaOf(layout.rest), 1e-6);
    }
    EXPECT_GT(withRest, 50);
    EXPECT_LT(withRest, 200);
}

TEST(TreemapLayoutTest, RestMayBeEverything) {
    const TreemapLayout layout = treemapLayout(Weights(100'000, 7), wide, 4);
    EXPECT_EQ(layout.shown, 0);
    EXPECT_EQ(layout.rest, wide);
}

// --- Neighbours

TEST(TreemapNeighbourTest, IsWhatTouchesTheMiddleOfTheEdge) {
    //  0 | 1 | 2
    //    | 3 | 2
    const std::vector<QRectF> places{
        {0, 0, 50, 100}, {50, 0, 50, 40}, {100, 0, 50, 100}, {50, 40, 50, 60}, {}};
    struct Step {
        int from;
        Qt::Edge edge;
        int to;
    };
    for (const auto& [from, edge, to] : {
             Step{0, Qt::RightEdge, 3},
             {0, Qt::LeftEdge, 0},
             {0, Qt::TopEdge, 0},
             {0, Qt::BottomEdge, 0},
             {1, Qt::LeftEdge, 0},
             {1, Qt::RightEdge, 2},
             {1, Qt::BottomEdge, 3},
             {1, Qt::TopEdge, 1},
             {3, Qt::TopEdge, 1},
             {3, Qt::BottomEdge, 3},
             {3, Qt::LeftEdge, 0},
             {3, Qt::RightEdge, 2},
             {2, Qt::LeftEdge, 3},
             {2, Qt::RightEdge, 2},
         })
        EXPECT_EQ(treemapNeighbour(places, from, edge), to) << from << " by " << edge;
}

TEST(TreemapNeighbourTest, MiddleBetweenTwoIsTheLowerOrRightOne) {
    const std::vector<QRectF> places{{0, 0, 50, 100}, {50, 0, 50, 50}, {50, 50, 50, 50}};
    EXPECT_EQ(treemapNeighbour(places, 0, Qt::RightEdge), 2);
}

TEST(TreemapNeighbourTest, StepsLeadTheirWayAndEverywhere) {
    std::mt19937 random(5);
    for (int i = 0; i < 150; ++i) {
        const Weights weights = randomWeights(random, 90);
        const TreemapLayout layout = treemapLayout(weights, wide);
        if (layout.order.empty())
            continue;
        std::set<int> reached{layout.order.front()};
        std::vector<int> next{layout.order.front()};
        while (!next.empty()) {
            const int from = next.back();
            next.pop_back();
            const QPointF start = layout.places[static_cast<std::size_t>(from)].center();
            for (const Qt::Edge edge : {Qt::LeftEdge, Qt::RightEdge, Qt::TopEdge, Qt::BottomEdge}) {
                const int to = treemapNeighbour(layout.places, from, edge);
                const QPointF way = layout.places[static_cast<std::size_t>(to)].center() - start;
                if (to != from) {
                    EXPECT_TRUE(edge == Qt::LeftEdge    ? way.x() < 0
                                : edge == Qt::RightEdge ? way.x() > 0
                                : edge == Qt::TopEdge   ? way.y() < 0
                                                        : way.y() > 0);
                }
                if (reached.insert(to).second)
                    next.push_back(to);
            }
        }
        EXPECT_EQ(reached.size(), layout.order.size()) << "round " << i;
    }
}

} // namespace
} // namespace tidewright
