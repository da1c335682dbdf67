// The picture of the status item: the health of the disk, and how much of it is free.
#pragma once

#include <QIcon>
#include <QImage>
#include <QString>

namespace tidewright {

/// Main thread. `health` is good, low or critical; without a text there is the symbol alone. Sizes
/// are in pixels of a screen at 100 %; `devicePixelRatio` is that of the screen. What can't be
/// drawn is replaced by the symbol of a disk.
struct StatusPill {
    StatusPill() = delete;

    /// As wide as the text needs, for a bar.
    static QImage image(const QString& health, const QString& text, double devicePixelRatio);

    /// For a tray, whose places are squares: a number with a unit stands in two lines.
    static QImage squareImage(const QString& health,
                              const QString& text,
                              int size,
                              double devicePixelRatio);

    enum class Shape { wide, square };
    /// That of the place where this system shows such items.
    static Shape usualShape();

    /// In every size that such a place may have, and never tinted by it.
    static QIcon icon(const QString& health, const QString& text, Shape shape = usualShape());
};

} // namespace tidewright
