// Where a panel stands that belongs to a status item.
#pragma once

#include <QRect>

namespace tidewright {

/// The top left corner, in the coordinates of all screens, of a panel of this size: as near to the
/// item and as centred to it as there is room in `room`, the part of the item's screen that is
/// for windows; below the item in the upper half of the screen, else above it. Of a panel that is
/// too large, top and left are in the room.
QPoint panelPlace(const QRect& item, QSize panel, const QRect& room);

} // namespace tidewright
