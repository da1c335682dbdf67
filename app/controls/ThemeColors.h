// The colours of one look, light or dark, and what keeps texts readable on them.
#pragma once

#include <QColor>
#include <QString>

#include <optional>

namespace tidewright {

enum class ThemeMode { light, dark };

/// Some are translucent and lie on top of `window` or `sidebar`.
struct ThemeColors {
    QColor window;
    QColor sidebar;
    QColor surface;    ///< the fill of a card and of a button
    QColor surfaceTop; ///< a card's upper edge, a hovered button
    QColor hair;
    QColor text;
    QColor text2;
    QColor text3; ///< not on `track`, `pressed` or `hoverLight`, and in the sidebar not on `sel`
    QColor accent;
    QColor onAccent;
    QColor green;
    QColor orange;
    QColor red;
    QColor teal;
    QColor blue;
    QColor track;
    QColor hover;
    QColor sel;

    QColor pressed;     ///< over a button or a row
    QColor hoverLight;  ///< over a card that is hovered
    QColor raised;      ///< opaque, of what floats over the window: menus and words of help
    QColor accentHover; ///< a prominent button that is hovered
    QColor accentPressed;
    QColor shadowNear;
    QColor shadowFar;
    QColor scrim; ///< over the window, behind a sheet

    bool operator==(const ThemeColors&) const = default;

    /// A tinted card fades from the one at its top to the other; both lie on `window`.
    QColor cardTop(const QColor& tint) const;
    QColor cardBottom(const QColor& tint) const;
    /// Behind a badge's text of that colour. Opaque: on a selected row the text would be too faint
    /// otherwise.
    QColor badgeGround(const QColor& color) const;
    /// The same, stronger, of a place in a treemap that is ticked.
    QColor tickedGround(const QColor& color) const;
};

/// Of the liquid that stands for a disk's content: it fades from top to bottom.
struct LiquidColors {
    QColor top;
    QColor bottom;
};

/// By the name of the disk's health: good, low or critical.
LiquidColors liquidColors(const QString& health);

/// `systemAccent` takes the accent's place, made lighter or darker until texts of it, and texts on
/// what is filled with it, have a contrast of 4.5:1.
ThemeColors themeColors(ThemeMode mode, const std::optional<QColor>& systemAccent);

} // namespace tidewright
