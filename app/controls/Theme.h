// The one place for what the screens look like: every colour, measure, duration and font.
//
// Measures are in the pixels of a screen at 100 %, which grow with its scale.
#pragma once

#include "app/controls/ThemeColors.h"

#include <QFont>
#include <QObject>
#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace tidewright {

/// What the system says of the look that its user wants; absent where it says nothing.
struct SystemLook {
    std::optional<bool> isDark;
    std::optional<QColor> accent;
    std::optional<bool> reducesMotion;
};

/// Main thread, after the QGuiApplication. QML makes one for its engine; until the program tells it
/// the system's look, and where that is silent, the palette decides between light and dark.
class Theme : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

    Q_PROPERTY(bool isDark READ isDark NOTIFY colorsChanged)
    Q_PROPERTY(QColor window READ window NOTIFY colorsChanged)
    Q_PROPERTY(QColor sidebar READ sidebar NOTIFY colorsChanged)
    Q_PROPERTY(QColor surface READ surface NOTIFY colorsChanged)
    Q_PROPERTY(QColor surfaceTop READ surfaceTop NOTIFY colorsChanged)
    Q_PROPERTY(QColor hair READ hair NOTIFY colorsChanged)
    Q_PROPERTY(QColor text READ text NOTIFY colorsChanged)
    Q_PROPERTY(QColor text2 READ text2 NOTIFY colorsChanged)
    Q_PROPERTY(QColor text3 READ text3 NOTIFY colorsChanged)
    Q_PROPERTY(QColor accent READ accent NOTIFY colorsChanged)
    Q_PROPERTY(QColor onAccent READ onAccent NOTIFY colorsChanged)
    Q_PROPERTY(QColor green READ green NOTIFY colorsChanged)
    Q_PROPERTY(QColor orange READ orange NOTIFY colorsChanged)
    Q_PROPERTY(QColor red READ red NOTIFY colorsChanged)
    Q_PROPERTY(QColor teal READ teal NOTIFY colorsChanged)
    Q_PROPERTY(QColor blue READ blue NOTIFY colorsChanged)
    Q_PROPERTY(QColor track READ track NOTIFY colorsChanged)
    Q_PROPERTY(QColor hover READ hover NOTIFY colorsChanged)
    Q_PROPERTY(QColor sel READ sel NOTIFY colorsChanged)
    Q_PROPERTY(QColor pressed READ pressed NOTIFY colorsChanged)
    Q_PROPERTY(QColor accentHover READ accentHover NOTIFY colorsChanged)
    Q_PROPERTY(QColor accentPressed READ accentPressed NOTIFY colorsChanged)
    Q_PROPERTY(QColor shadowNear READ shadowNear NOTIFY colorsChanged)
    Q_PROPERTY(QColor shadowFar READ shadowFar NOTIFY colorsChanged)
    Q_PROPERTY(QColor scrim READ scrim NOTIFY colorsChanged)
    /// By the names of a disk's health: `Theme.healthColors[health]`. Liquids fade from top to
    /// bottom.
    Q_PROPERTY(QVariantMap healthColors READ healthColors NOTIFY colorsChanged)
    Q_PROPERTY(QVariantMap liquidTop READ liquidTop CONSTANT)
    Q_PROPERTY(QVariantMap liquidBottom READ liquidBottom CONSTANT)
    Q_PROPERTY(QColor freed READ freed CONSTANT) ///< the part of a bar that a cleanup would free

    Q_PROPERTY(bool reduceMotion READ reduceMotion NOTIFY reduceMotionChanged)
    /// In milliseconds; 0 where motion is reduced.
    Q_PROPERTY(int springDuration READ springDuration NOTIFY reduceMotionChanged)
    Q_PROPERTY(int snappyDuration READ snappyDuration NOTIFY reduceMotionChanged)
    Q_PROPERTY(int crossFadeDuration READ crossFadeDuration NOTIFY reduceMotionChanged)
    Q_PROPERTY(int sheetRise READ sheetRise NOTIFY reduceMotionChanged)
    /// How a spring settles within either duration, for `easing.bezierCurve` with `easing.type:
    /// Easing.BezierSpline`.
    Q_PROPERTY(QVariantList springCurve READ springCurve CONSTANT)
    /// For what is animated step by step: the time in seconds that an undamped spring would swing.
    Q_PROPERTY(double springResponse MEMBER springResponse CONSTANT)
    Q_PROPERTY(double snappyResponse MEMBER snappyResponse CONSTANT)
    Q_PROPERTY(double springDamping MEMBER springDamping CONSTANT)

    Q_PROPERTY(QFont largeTitle READ largeTitle CONSTANT)
    Q_PROPERTY(QFont title READ title CONSTANT)
    Q_PROPERTY(QFont title2 READ title2 CONSTANT)
    Q_PROPERTY(QFont title3 READ title3 CONSTANT)
    Q_PROPERTY(QFont headline READ headline CONSTANT)
    Q_PROPERTY(QFont body READ body CONSTANT)
    Q_PROPERTY(QFont callout READ callout CONSTANT)
    Q_PROPERTY(QFont subheadline READ subheadline CONSTANT)
    Q_PROPERTY(QFont caption READ caption CONSTANT)
    Q_PROPERTY(QFont rowTitle READ rowTitle CONSTANT)
    Q_PROPERTY(QFont figure READ figure CONSTANT)
    Q_PROPERTY(QFont bigFigure READ bigFigure CONSTANT)

    Q_PROPERTY(int windowWidth MEMBER windowWidth CONSTANT)
    Q_PROPERTY(int windowHeight MEMBER windowHeight CONSTANT)
    Q_PROPERTY(int windowMinimumWidth MEMBER windowMinimumWidth CONSTANT)
    Q_PROPERTY(int windowMinimumHeight MEMBER windowMinimumHeight CONSTANT)
    Q_PROPERTY(int windowPaddingAside MEMBER windowPaddingAside CONSTANT)
    Q_PROPERTY(int windowPaddingAbove MEMBER windowPaddingAbove CONSTANT)
    Q_PROPERTY(int sidebarMinimumWidth MEMBER sidebarMinimumWidth CONSTANT)
    Q_PROPERTY(int sidebarWidth MEMBER sidebarWidth CONSTANT)
    Q_PROPERTY(int sidebarMaximumWidth MEMBER sidebarMaximumWidth CONSTANT)
    Q_PROPERTY(int sidebarRowHeight MEMBER sidebarRowHeight CONSTANT)
    Q_PROPERTY(int sidebarRowRadius MEMBER sidebarRowRadius CONSTANT)
    Q_PROPERTY(int sidebarRowPadding MEMBER sidebarRowPadding CONSTANT)
    Q_PROPERTY(int cardSpacing MEMBER cardSpacing CONSTANT)
    Q_PROPERTY(int blockSpacing MEMBER blockSpacing CONSTANT)
    Q_PROPERTY(int orbSize MEMBER orbSize CONSTANT)
    Q_PROPERTY(int orbSpacing MEMBER orbSpacing CONSTANT)
    Q_PROPERTY(int cardRadius MEMBER cardRadius CONSTANT)
    Q_PROPERTY(int cardPadding MEMBER cardPadding CONSTANT)
    Q_PROPERTY(int listRadius MEMBER listRadius CONSTANT)
    Q_PROPERTY(int sheetRadius MEMBER sheetRadius CONSTANT)
    Q_PROPERTY(int buttonRadius MEMBER buttonRadius CONSTANT)
    Q_PROPERTY(int largeButtonRadius MEMBER largeButtonRadius CONSTANT)
    Q_PROPERTY(int badgeRadius MEMBER badgeRadius CONSTANT)
    Q_PROPERTY(int toolbarButtonHeight MEMBER toolbarButtonHeight CONSTANT)
    Q_PROPERTY(int largeButtonHeight MEMBER largeButtonHeight CONSTANT)
    Q_PROPERTY(int smallButtonHeight MEMBER smallButtonHeight CONSTANT)
    Q_PROPERTY(int tableRowPadding MEMBER tableRowPadding CONSTANT)
    Q_PROPERTY(int rowSymbolSize MEMBER rowSymbolSize CONSTANT)
    Q_PROPERTY(int cardSymbolSize MEMBER cardSymbolSize CONSTANT)
    Q_PROPERTY(int emptySymbolSize MEMBER emptySymbolSize CONSTANT)
    Q_PROPERTY(double symbolLineWidth MEMBER symbolLineWidth CONSTANT)
    Q_PROPERTY(int symbolLineBase MEMBER symbolLineBase CONSTANT)
    Q_PROPERTY(int focusRingWidth MEMBER focusRingWidth CONSTANT)
    Q_PROPERTY(int focusRingDistance MEMBER focusRingDistance CONSTANT)
    Q_PROPERTY(int shadowNearOffset MEMBER shadowNearOffset CONSTANT)
    Q_PROPERTY(int shadowNearBlur MEMBER shadowNearBlur CONSTANT)
    Q_PROPERTY(int shadowFarOffset MEMBER shadowFarOffset CONSTANT)
    Q_PROPERTY(int shadowFarBlur MEMBER shadowFarBlur CONSTANT)

public:
    static constexpr int windowWidth = 1180;
    static constexpr int windowHeight = 760;
    static constexpr int windowMinimumWidth = 900; ///< of the content, as the next
    static constexpr int windowMinimumHeight = 600;
    static constexpr int windowPaddingAside = 32; ///< left and right
    static constexpr int windowPaddingAbove = 24; ///< above and below
    static constexpr int sidebarMinimumWidth = 200;
    static constexpr int sidebarWidth = 220;
    static constexpr int sidebarMaximumWidth = 280;
    static constexpr int sidebarRowHeight = 30;
    static constexpr int sidebarRowRadius = 8;
    static constexpr int sidebarRowPadding = 10;
    static constexpr int cardSpacing = 14;
    static constexpr int blockSpacing = 26;
    static constexpr int orbSize = 210;
    static constexpr int orbSpacing = 36; ///< to the column beside it
    static constexpr int cardRadius = 16;
    static constexpr int cardPadding = 16;
    static constexpr int listRadius = 12; ///< of a list inside something else
    static constexpr int sheetRadius = 18;
    static constexpr int buttonRadius = 8;
    static constexpr int largeButtonRadius = 10;
    static constexpr int badgeRadius = 9;
    static constexpr int toolbarButtonHeight = 30;
    static constexpr int largeButtonHeight = 36;
    static constexpr int smallButtonHeight = 26;
    static constexpr int tableRowPadding = 7; ///< above and below
    static constexpr int rowSymbolSize = 16;
    static constexpr int cardSymbolSize = 22;
    static constexpr int emptySymbolSize = 34;
    static constexpr double symbolLineWidth = 1.75; ///< of a symbol of the size `symbolLineBase`
    static constexpr int symbolLineBase = 24;
    static constexpr int focusRingWidth = 2;
    static constexpr int focusRingDistance = 2;
    static constexpr int shadowNearOffset = 1; ///< downwards
    static constexpr int shadowNearBlur = 2;
    static constexpr int shadowFarOffset = 8;
    static constexpr int shadowFarBlur = 24;

    static constexpr double springResponse = 0.35;
    static constexpr double snappyResponse = 0.25;
    static constexpr double springDamping = 1; ///< the spring never swings beyond its goal

    explicit Theme(QObject* parent = nullptr);

    /// Takes the place of what was told before.
    void setSystemLook(const SystemLook& look);

    bool isDark() const { return m_mode == ThemeMode::dark; }
    QColor window() const { return m_colors.window; }
    QColor sidebar() const { return m_colors.sidebar; }
    QColor surface() const { return m_colors.surface; }
    QColor surfaceTop() const { return m_colors.surfaceTop; }
    QColor hair() const { return m_colors.hair; }
    QColor text() const { return m_colors.text; }
    QColor text2() const { return m_colors.text2; }
    QColor text3() const { return m_colors.text3; }
    QColor accent() const { return m_colors.accent; }
    QColor onAccent() const { return m_colors.onAccent; }
    QColor green() const { return m_colors.green; }
    QColor orange() const { return m_colors.orange; }
    QColor red() const { return m_colors.red; }
    QColor teal() const { return m_colors.teal; }
    QColor blue() const { return m_colors.blue; }
    QColor track() const { return m_colors.track; }
    QColor hover() const { return m_colors.hover; }
    QColor sel() const { return m_colors.sel; }
    QColor pressed() const { return m_colors.pressed; }
    QColor accentHover() const { return m_colors.accentHover; }
    QColor accentPressed() const { return m_colors.accentPressed; }
    QColor shadowNear() const { return m_colors.shadowNear; }
    QColor shadowFar() const { return m_colors.shadowFar; }
    QColor scrim() const { return m_colors.scrim; }
    QVariantMap healthColors() const;
    QVariantMap liquidTop() const;
    QVariantMap liquidBottom() const;
    QColor freed() const;

    /// As ThemeColors says. A binding follows a change of the mode if it takes the argument from
    /// a property: `Theme.badgeGround(Theme.green)`.
    Q_INVOKABLE QColor cardTop(const QColor& tint) const { return m_colors.cardTop(tint); }
    Q_INVOKABLE QColor cardBottom(const QColor& tint) const { return m_colors.cardBottom(tint); }
    Q_INVOKABLE QColor badgeGround(const QColor& color) const {
        return m_colors.badgeGround(color);
    }

    /// The system's wish, unless the environment variable TIDEWRIGHT_REDUCE_MOTION is 1 or 0.
    bool reduceMotion() const { return m_reduceMotion; }
    int springDuration() const;
    int snappyDuration() const;
    int crossFadeDuration() const { return m_reduceMotion ? 0 : 180; }
    int sheetRise() const { return m_reduceMotion ? 0 : 12; }
    QVariantList springCurve() const;

    QFont largeTitle() const;
    QFont title() const;
    QFont title2() const;
    QFont title3() const;
    QFont headline() const;
    QFont body() const;
    QFont callout() const;
    QFont subheadline() const;
    QFont caption() const;
    QFont rowTitle() const;
    QFont figure() const;
    QFont bigFigure() const;

    /// The same font in another weight: `Theme.semibold(Theme.title3)`.
    Q_INVOKABLE QFont medium(const QFont& font) const;
    Q_INVOKABLE QFont semibold(const QFont& font) const;
    Q_INVOKABLE QFont bold(const QFont& font) const;

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    /// Once for all colours that have changed.
    void colorsChanged();
    void reduceMotionChanged();

private:
    void update();

    SystemLook m_look;
    ThemeMode m_mode = ThemeMode::light;
    ThemeColors m_colors;
    bool m_reduceMotion = false;
};

} // namespace tidewright
