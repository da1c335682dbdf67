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
    Q_PROPERTY(QColor hoverLight READ hoverLight NOTIFY colorsChanged)
    Q_PROPERTY(QColor raised READ raised NOTIFY colorsChanged)
    Q_PROPERTY(QColor accentHover READ accentHover NOTIFY colorsChanged)
    Q_PROPERTY(QColor accentPressed READ accentPressed NOTIFY colorsChanged)
    Q_PROPERTY(QColor shadowNear READ shadowNear NOTIFY colorsChanged)
    Q_PROPERTY(QColor shadowFar READ shadowFar NOTIFY colorsChanged)
    Q_PROPERTY(QColor scrim READ scrim NOTIFY colorsChanged)
    /// By the names of a disk's health: `Theme.healthColors[health]`. Liquids fade from top to
    /// bottom. Those of severities are by the names of an insight's severity.
    Q_PROPERTY(QVariantMap healthColors READ healthColors NOTIFY colorsChanged)
    Q_PROPERTY(QVariantMap severityColors READ severityColors NOTIFY colorsChanged)
    Q_PROPERTY(QVariantMap liquidTop READ liquidTop CONSTANT)
    Q_PROPERTY(QVariantMap liquidBottom READ liquidBottom CONSTANT)
    /// By the names of decisions, and by "" for what was not decided: the colour of what is said of
    /// it, the ground of its place in a treemap, and that of one that is ticked.
    Q_PROPERTY(QVariantMap decisionColors READ decisionColors NOTIFY colorsChanged)
    Q_PROPERTY(QVariantMap decisionGrounds READ decisionGrounds NOTIFY colorsChanged)
    Q_PROPERTY(QVariantMap tickedGrounds READ tickedGrounds NOTIFY colorsChanged)
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
    Q_PROPERTY(QFont resultFigure READ resultFigure CONSTANT)
    Q_PROPERTY(QFont panelFigure READ panelFigure CONSTANT)

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
    Q_PROPERTY(double disabledOpacity MEMBER disabledOpacity CONSTANT)
    Q_PROPERTY(double pressedLinkOpacity MEMBER pressedLinkOpacity CONSTANT)
    Q_PROPERTY(int buttonPadding MEMBER buttonPadding CONSTANT)
    Q_PROPERTY(int smallButtonPadding MEMBER smallButtonPadding CONSTANT)
    Q_PROPERTY(int largeButtonPadding MEMBER largeButtonPadding CONSTANT)
    Q_PROPERTY(int iconButtonWidth MEMBER iconButtonWidth CONSTANT)
    Q_PROPERTY(int buttonSpacing MEMBER buttonSpacing CONSTANT)
    Q_PROPERTY(int smallSymbolSize MEMBER smallSymbolSize CONSTANT)
    Q_PROPERTY(int tickBoxSize MEMBER tickBoxSize CONSTANT)
    Q_PROPERTY(int tickBoxArea MEMBER tickBoxArea CONSTANT)
    Q_PROPERTY(int tickBoxRadius MEMBER tickBoxRadius CONSTANT)
    Q_PROPERTY(int toggleWidth MEMBER toggleWidth CONSTANT)
    Q_PROPERTY(int toggleHeight MEMBER toggleHeight CONSTANT)
    Q_PROPERTY(int toggleMargin MEMBER toggleMargin CONSTANT)
    Q_PROPERTY(int pickerMargin MEMBER pickerMargin CONSTANT)
    Q_PROPERTY(int searchFieldWidth MEMBER searchFieldWidth CONSTANT)
    Q_PROPERTY(int progressWidth MEMBER progressWidth CONSTANT)
    Q_PROPERTY(int progressHeight MEMBER progressHeight CONSTANT)
    Q_PROPERTY(int capacityBarHeight MEMBER capacityBarHeight CONSTANT)
    Q_PROPERTY(int badgePadding MEMBER badgePadding CONSTANT)
    Q_PROPERTY(int badgeSpacing MEMBER badgeSpacing CONSTANT)
    Q_PROPERTY(int badgeTextOffset MEMBER badgeTextOffset CONSTANT)
    Q_PROPERTY(int badgeSymbolSize MEMBER badgeSymbolSize CONSTANT)
    Q_PROPERTY(int countBadgeHeight MEMBER countBadgeHeight CONSTANT)
    Q_PROPERTY(int titleSpacing MEMBER titleSpacing CONSTANT)
    Q_PROPERTY(int emptyStateWidth MEMBER emptyStateWidth CONSTANT)
    Q_PROPERTY(int emptyStateSpacing MEMBER emptyStateSpacing CONSTANT)
    Q_PROPERTY(int scrollBarWidth MEMBER scrollBarWidth CONSTANT)
    Q_PROPERTY(int scrollBarMargin MEMBER scrollBarMargin CONSTANT)
    Q_PROPERTY(int scrollBarLength MEMBER scrollBarLength CONSTANT)
    Q_PROPERTY(int scrollBarLingers MEMBER scrollBarLingers CONSTANT)
    Q_PROPERTY(int wheelLine MEMBER wheelLine CONSTANT)
    Q_PROPERTY(int keyStep MEMBER keyStep CONSTANT)
    Q_PROPERTY(int pageOverlap MEMBER pageOverlap CONSTANT)
    Q_PROPERTY(int revealMargin MEMBER revealMargin CONSTANT)
    Q_PROPERTY(double scrollBarOpacity MEMBER scrollBarOpacity CONSTANT)
    Q_PROPERTY(int menuWidth MEMBER menuWidth CONSTANT)
    Q_PROPERTY(int menuPadding MEMBER menuPadding CONSTANT)
    Q_PROPERTY(int tipDelay MEMBER tipDelay CONSTANT)
    Q_PROPERTY(int tipWidth MEMBER tipWidth CONSTANT)
    Q_PROPERTY(int tipPadding MEMBER tipPadding CONSTANT)
    Q_PROPERTY(int tipDistance MEMBER tipDistance CONSTANT)
    Q_PROPERTY(int mapHeight MEMBER mapHeight CONSTANT)
    Q_PROPERTY(int mapPageWidth MEMBER mapPageWidth CONSTANT)
    Q_PROPERTY(int mapPageHeight MEMBER mapPageHeight CONSTANT)
    Q_PROPERTY(int sheetWidth MEMBER sheetWidth CONSTANT)
    Q_PROPERTY(int sheetHeight MEMBER sheetHeight CONSTANT)
    Q_PROPERTY(int panelWidth MEMBER panelWidth CONSTANT)
    Q_PROPERTY(int panelOrbSize MEMBER panelOrbSize CONSTANT)
    Q_PROPERTY(int panelOrbSpacing MEMBER panelOrbSpacing CONSTANT)
    Q_PROPERTY(int settingsWidth MEMBER settingsWidth CONSTANT)
    Q_PROPERTY(int settingsHeight MEMBER settingsHeight CONSTANT)
    Q_PROPERTY(int settingsMinimumHeight MEMBER settingsMinimumHeight CONSTANT)
    Q_PROPERTY(int formRowHeight MEMBER formRowHeight CONSTANT)
    Q_PROPERTY(int formPadding MEMBER formPadding CONSTANT)
    Q_PROPERTY(int formSpacing MEMBER formSpacing CONSTANT)
    Q_PROPERTY(int stepperWidth MEMBER stepperWidth CONSTANT)
    Q_PROPERTY(int repeatDelay MEMBER repeatDelay CONSTANT)
    Q_PROPERTY(int repeatInterval MEMBER repeatInterval CONSTANT)

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

    static constexpr double disabledOpacity = 0.4;
    static constexpr double pressedLinkOpacity = 0.7;
    static constexpr int buttonPadding = 12; ///< left and right of the words
    static constexpr int smallButtonPadding = 10;
    static constexpr int largeButtonPadding = 16;
    static constexpr int iconButtonWidth = 32;
    static constexpr int buttonSpacing = 8; ///< between symbol and words
    static constexpr int smallSymbolSize = 14;
    static constexpr int tickBoxSize = 15;
    static constexpr int tickBoxArea = 24; ///< of what can be clicked, with the box in its middle
    static constexpr int tickBoxRadius = 4;
    static constexpr int toggleWidth = 36;
    static constexpr int toggleHeight = 20;
    static constexpr int toggleMargin = 3; ///< around its knob
    static constexpr int pickerMargin = 2; ///< around the part that is picked
    static constexpr int searchFieldWidth = 170;
    static constexpr int progressWidth = 200;
    static constexpr int progressHeight = 6;
    static constexpr int capacityBarHeight = 18;
    static constexpr int badgePadding = 8;
    static constexpr int badgeSpacing = 4;
    static constexpr int badgeTextOffset = 1; ///< downwards: capitals stand in the middle then
    static constexpr int badgeSymbolSize = 12;
    static constexpr int countBadgeHeight = 16;
    static constexpr int titleSpacing = 2; ///< between a title and what belongs to it
    static constexpr int emptyStateWidth = 340;
    static constexpr int emptyStateSpacing = 10;
    static constexpr int scrollBarWidth = 6;
    static constexpr int scrollBarMargin = 3;
    static constexpr int scrollBarLength = 28;   ///< at least
    static constexpr int scrollBarLingers = 900; ///< milliseconds after the last movement
    static constexpr int wheelLine = 22; ///< of which the wheel turns some, as the system says
    static constexpr int keyStep = 48;
    static constexpr int pageOverlap = 40;  ///< what a page has in common with the next
    static constexpr int revealMargin = 20; ///< around what is scrolled into view
    static constexpr double scrollBarOpacity = 0.6;
    static constexpr int menuWidth = 180; ///< at least
    static constexpr int menuPadding = 5;
    static constexpr int tipDelay = 600;  ///< milliseconds
    static constexpr int tipWidth = 280;  ///< at most
    static constexpr int tipPadding = 10; ///< left and right; half of it above and below
    static constexpr int tipDistance = 6;
    static constexpr int mapHeight = 180;     ///< of a treemap above a list
    static constexpr int mapPageWidth = 800;  ///< of a page that shows one without being asked
    static constexpr int mapPageHeight = 760; ///< of one with room for it above the list
    static constexpr int sheetWidth = 620;
    static constexpr int sheetHeight = 600;
    static constexpr int panelWidth = 320; ///< of the one at the status item
    static constexpr int panelOrbSize = 56;
    static constexpr int panelOrbSpacing = 12;
    static constexpr int settingsWidth = 580;
    static constexpr int settingsHeight = 640; ///< at most, unless its user wants it higher
    static constexpr int settingsMinimumHeight = 360;
    static constexpr int formRowHeight = 40; ///< at least
    static constexpr int formPadding = 14;   ///< left and right in its rows
    static constexpr int formSpacing = 22;   ///< between its sections
    static constexpr int stepperWidth = 60;
    static constexpr int repeatDelay = 400;   ///< milliseconds until what is held down acts again
    static constexpr int repeatInterval = 70; ///< milliseconds between all further times

    static constexpr double springResponse = 0.35;
    static constexpr double snappyResponse = 0.25;
    static constexpr double springDamping = 1; ///< the spring never swings beyond its goal

    explicit Theme(QObject* parent = nullptr);

    /// The family of all fonts, for what is drawn without QML.
    static QFont font(int pixels, QFont::Weight weight = QFont::Normal);

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
    QColor hoverLight() const { return m_colors.hoverLight; }
    QColor raised() const { return m_colors.raised; }
    QColor accentHover() const { return m_colors.accentHover; }
    QColor accentPressed() const { return m_colors.accentPressed; }
    QColor shadowNear() const { return m_colors.shadowNear; }
    QColor shadowFar() const { return m_colors.shadowFar; }
    QColor scrim() const { return m_colors.scrim; }
    QVariantMap healthColors() const;
    QVariantMap severityColors() const;
    QVariantMap liquidTop() const;
    QVariantMap liquidBottom() const;
    QVariantMap decisionColors() const;
    QVariantMap decisionGrounds() const;
    QVariantMap tickedGrounds() const;
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
    QFont resultFigure() const;
    QFont panelFigure() const;

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
