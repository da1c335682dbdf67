#include "app/tray/PanelPlace.h"

#include <algorithm>

namespace tidewright {

namespace {

constexpr int gap = 6; // between item and panel, and from the edges of the room

int within(int wanted, int low, int high) { return std::max(low, std::min(wanted, high)); }

} // namespace

QPoint panelPlace(const QRect& item, QSize panel, const QRect& room) {
    const QRect free = room.adjusted(gap, gap, -gap, -gap);
    const bool isBelow = item.center().y() < room.center().y();
    const int x = item.x() + (item.width() - panel.width()) / 2;
    const int y = isBelow ? item.bottom() + 1 + gap : item.top() - gap - panel.height();
    return {within(x, free.left(), free.right() + 1 - panel.width()),
            within(y, free.top(), free.bottom() + 1 - panel.height())};
}

} // namespace tidewright
