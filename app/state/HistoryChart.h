// Where the bars and the labels of the chart of past cleanups stand: a bar for each, by day.
//
// Places and lengths are shares of the plot, across from its left and up from its bottom.
#pragma once

#include "app/state/HistoryStore.h"

#include <QStringList>
#include <QVariantList>

namespace tidewright {

/// A label of an axis.
struct ChartTick {
    Q_GADGET
    Q_PROPERTY(double place MEMBER place)
    Q_PROPERTY(QString text MEMBER text)

public:
    double place = 0;
    QString text;

    bool operator==(const ChartTick&) const = default;
};

struct HistoryChart {
    struct Bar {
        double left = 0;
        double width = 0;
        double bottom = 0;
        double height = 0;

        bool operator==(const Bar&) const = default;
    };

    /// What lengths of the screen are across the plot.
    struct Room {
        double narrowestBar = 0;
        double widestBar = 0;
        double date = 0; ///< from the middle of one date to that of the next, at least
    };

    std::vector<Bar> bars;        ///< in the order of the entries
    std::vector<ChartTick> dates; ///< from left to right
    std::vector<ChartTick> sizes; ///< from 0 at the bottom to the top, in decimal gigabytes

    /// Days without cleanups take their room too. Bars of one day stand on each other, the earliest
    /// at the bottom; what freed nothing has no height. `timeZone` is an Olson name; the user's own
    /// zone when absent.
    static HistoryChart of(const std::vector<HistoryEntry>& entries,
                           const Room& room,
                           const std::optional<std::string>& timeZone = std::nullopt);

    /// The position of the bar that a pointer means: of the nearest day, if its middle or a bar of
    /// it is not farther than `reach`, and there of the bar at this height or the nearest to it.
    std::optional<std::size_t> barAt(double x, double y, double reach) const;

    /// Dates as they stand along the axis, to see how wide they get.
    static QStringList sampleDates();
};

} // namespace tidewright
