// Where the rectangles of a treemap stand: areas in proportion to weights, as near to squares as a
// quick way finds.
//
// M. Bruls, K. Huizing, J. J. van Wijk: Squarified Treemaps. Proceedings of the Joint Eurographics
// and IEEE TCVG Symposium on Visualization, 2000.
#pragma once

#include <QRectF>

#include <vector>

namespace tidewright {

struct TreemapLayout {
    /// One for each weight, without any space between them; null where the weight is not above 0.
    std::vector<QRectF> places;
    /// The indices of the weights above 0, the heaviest first, equals as they came. It is the order
    /// from the upper left to the lower right.
    std::vector<int> order;
    /// How many of `order` stand outside of `rest`.
    int shown = 0;
    /// From the first row with a place that is too thin onwards; null where there is none.
    QRectF rest;
};

/// `thinnest` is the least width and height of a place that is not in the rest. All places are null
/// where the area is empty.
TreemapLayout treemapLayout(const std::vector<qint64>& weights,
                            const QRectF& area,
                            double thinnest = 0);

/// The place beyond this edge of the one at `from`: of those that touch the edge, the one at its
/// middle. `from` itself where nothing is there.
int treemapNeighbour(const std::vector<QRectF>& places, int from, Qt::Edge edge);

} // namespace tidewright
