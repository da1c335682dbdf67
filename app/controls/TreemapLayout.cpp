#include "app/controls/TreemapLayout.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tidewright {

namespace {

/// Fills the area a row at a time. A row is a strip along the shorter side of what is still free.
class Filling {
public:
    Filling(const std::vector<qint64>& weights, const QRectF& area, double thinnest)
        : m_weights(weights),
          m_thinnest(thinnest),
          m_free(area) {
        m_layout.places.resize(weights.size());
        for (std::size_t i = 0; i < weights.size(); ++i)
            if (weights[i] > 0)
                m_layout.order.push_back(static_cast<int>(i));
        std::ranges::stable_sort(m_layout.order, std::ranges::greater(),
                                 [&](int index) { return weight(index); });
        // From the lightest, whose bytes would be lost beside a large sum.
        m_sums.resize(m_layout.order.size() + 1);
        for (std::size_t i = m_layout.order.size(); i-- > 0;)
            m_sums[i] = m_sums[i + 1] + weight(m_layout.order[i]);
    }

    TreemapLayout fill() && {
        const std::size_t count = m_layout.order.size();
        m_layout.shown = static_cast<int>(count);
        if (m_free.isEmpty())
            return std::move(m_layout);
        for (std::size_t first = 0; first < count;) {
            const std::size_t end = endOfRow(first);
            placeRow(first, end);
            first = end;
        }
        return std::move(m_layout);
    }

private:
    double weight(int index) const {
        return static_cast<double>(m_weights[static_cast<std::size_t>(index)]);
    }
    double weightAt(std::size_t position) const { return weight(m_layout.order[position]); }

    /// A row grows as long as the worst of its aspect ratios gets no worse.
    std::size_t endOfRow(std::size_t first) const {
        const double side = std::min(m_free.width(), m_free.height());
        const double scale = m_free.width() * m_free.height() / m_sums[first];
        const double heaviest = weightAt(first) * scale;
        double worst = std::numeric_limits<double>::infinity();
        double sum = 0;
        std::size_t end = first;
        for (; end < m_layout.order.size(); ++end) {
            const double lightest = weightAt(end) * scale;
            sum += lightest;
            const double thickness = sum / side;
            const double ratio =
                std::max(heaviest / (thickness * thickness), thickness * thickness / lightest);
            if (end > first && !(ratio <= worst))
                break;
            worst = ratio;
        }
        return end;
    }

    void placeRow(std::size_t first, std::size_t end) {
        const bool isColumn = m_free.width() >= m_free.height();
        const double side = isColumn ? m_free.height() : m_free.width();
        const double depth = isColumn ? m_free.width() : m_free.height();
        const bool isLast = end == m_layout.order.size();
        double sum = 0;
        for (std::size_t i = first; i < end; ++i)
            sum += weightAt(i);
        const double thickness = isLast ? depth : depth * std::min(sum / m_sums[first], 1.0);

        double before = 0;
        double from = 0;
        double thinnest = thickness;
        for (std::size_t i = first; i < end; ++i) {
            before += weightAt(i);
            const double to = i + 1 == end ? side : side * (before / sum);
            QRectF& place = m_layout.places[static_cast<std::size_t>(m_layout.order[i])];
            place = isColumn ? QRectF(m_free.x(), m_free.y() + from, thickness, to - from)
                             : QRectF(m_free.x() + from, m_free.y(), to - from, thickness);
            thinnest = std::min(thinnest, to - from);
            from = to;
        }
        if (thinnest < m_thinnest && m_layout.rest.isNull()) {
            m_layout.rest = m_free;
            m_layout.shown = static_cast<int>(first);
        }
        if (isColumn)
            m_free.setLeft(m_free.x() + thickness);
        else
            m_free.setTop(m_free.y() + thickness);
    }

    const std::vector<qint64>& m_weights;
    double m_thinnest;
    QRectF m_free;
    std::vector<double> m_sums; ///< by position in the order, of it and all after it
    TreemapLayout m_layout;
};

/// As if seen with the edge on the right.
QRectF turned(const QRectF& place, Qt::Edge edge) {
    switch (edge) {
    case Qt::RightEdge:
        break;
    case Qt::LeftEdge:
        return {-place.right(), place.y(), place.width(), place.height()};
    case Qt::BottomEdge:
        return {place.y(), place.x(), place.height(), place.width()};
    case Qt::TopEdge:
        return {-place.bottom(), place.x(), place.height(), place.width()};
    }
    return place;
}

} // namespace

TreemapLayout treemapLayout(const std::vector<qint64>& weights,
                            const QRectF& area,
                            double thinnest) {
    return Filling(weights, area, thinnest).fill();
}

int treemapNeighbour(const std::vector<QRectF>& places, int from, Qt::Edge edge) {
    constexpr double rounding = 1e-6;
    const QRectF start = turned(places[static_cast<std::size_t>(from)], edge);
    const double middle = start.center().y();
    int nearest = from;
    double distance = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (places[i].isEmpty())
            continue;
        const QRectF place = turned(places[i], edge);
        if (place.left() < start.right() - rounding || place.center().x() <= start.center().x())
            continue;
        if (middle < place.top() || middle >= place.bottom())
            continue;
        if (place.left() < distance) {
            nearest = static_cast<int>(i);
            distance = place.left();
        }
    }
    return nearest;
}

} // namespace tidewright
