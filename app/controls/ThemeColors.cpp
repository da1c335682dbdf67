#include "app/controls/ThemeColors.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>

namespace tidewright {

namespace {

// A hair more than WCAG 2 asks for, since colours are rounded where they lie on each other.
constexpr double textContrast = 4.51;
constexpr double symbolContrast = 3.01;

QColor withAlpha(QColor color, double alpha) {
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

/// `front` on top of `back`, either of which may be translucent.
QColor over(const QColor& front, const QColor& back) {
    const float alpha = front.alphaF() + back.alphaF() * (1 - front.alphaF());
    const auto part = [&](float inFront, float behind) {
        const float sum = inFront * front.alphaF() + behind * back.alphaF() * (1 - front.alphaF());
        return std::min(sum / alpha, 1.0F);
    };
    return QColor::fromRgbF(part(front.redF(), back.redF()), part(front.greenF(), back.greenF()),
                            part(front.blueF(), back.blueF()), std::min(alpha, 1.0F));
}

/// By WCAG 2.
double relativeLuminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double contrast(const QColor& one, const QColor& other) {
    const auto [dark, light] = std::minmax({relativeLuminance(one), relativeLuminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

QColor white(double alpha) { return withAlpha(Qt::white, alpha); }

QColor black(double alpha) { return withAlpha(Qt::black, alpha); }

ThemeColors lightColors() {
    const QColor ink(20, 23, 31);
    ThemeColors colors;
    colors.window = QColor(0xF4, 0xF5, 0xF8);
    colors.sidebar = QColor(0xE9, 0xEB, 0xF1);
    colors.surface = white(0.72);
    colors.surfaceTop = white(0.95);
    colors.hair = withAlpha(QColor(18, 22, 33), 0.09);
    colors.text = QColor(0x14, 0x17, 0x1F);
    colors.text2 = QColor(0x56, 0x5D, 0x6D);
    colors.text3 = QColor(0x5D, 0x64, 0x73);
    colors.accent = QColor(0x42, 0x50, 0xDD);
    colors.onAccent = QColor(0xFF, 0xFF, 0xFF);
    colors.green = QColor(0x15, 0x70, 0x38);
    colors.orange = QColor(0x9A, 0x4A, 0x07);
    colors.red = QColor(0xBA, 0x21, 0x30);
    colors.teal = QColor(0x0A, 0x6B, 0x70);
    colors.blue = QColor(0x1B, 0x5A, 0xC0);
    colors.track = withAlpha(ink, 0.12);
    colors.hover = withAlpha(ink, 0.05);
    colors.pressed = withAlpha(ink, 0.09);
    colors.hoverLight = white(0.5);
    colors.raised = QColor(0xFF, 0xFF, 0xFF);
    colors.shadowNear = black(0.05);
    colors.shadowFar = black(0.05);
    colors.scrim = withAlpha(QColor(15, 17, 22), 0.35);
    return colors;
}

ThemeColors darkColors() {
    ThemeColors colors;
    colors.window = QColor(0x14, 0x16, 0x1C);
    colors.sidebar = QColor(0x1A, 0x1D, 0x25);
    colors.surface = white(0.045);
    colors.surfaceTop = white(0.11);
    colors.hair = white(0.09);
    colors.text = QColor(0xF1, 0xF3, 0xF8);
    colors.text2 = QColor(0xA9, 0xB0, 0xC0);
    colors.text3 = QColor(0x96, 0x9E, 0xAF);
    colors.accent = QColor(0x8A, 0x97, 0xFF);
    colors.onAccent = QColor(0x10, 0x12, 0x1A);
    colors.green = QColor(0x4C, 0xD0, 0x7D);
    colors.orange = QColor(0xFF, 0xAB, 0x52);
    colors.red = QColor(0xFF, 0x7A, 0x80);
    colors.teal = QColor(0x4F, 0xD0, 0xD4);
    colors.blue = QColor(0x7D, 0xB0, 0xFF);
    colors.track = white(0.13);
    colors.hover = white(0.06);
    colors.pressed = black(0.2);
    colors.hoverLight = white(0.04);
    colors.raised = QColor(0x23, 0x26, 0x2F);
    colors.shadowNear = black(0.30);
    colors.shadowFar = black(0.22);
    colors.scrim = black(0.4);
    return colors;
}

void setAccent(ThemeColors& colors, ThemeMode mode, const QColor& accent) {
    colors.accent = accent;
    colors.sel = withAlpha(accent, mode == ThemeMode::light ? 0.13 : 0.18);
    colors.accentHover = over(white(0.08), accent);
    colors.accentPressed = over(black(0.1), accent);
}

bool areReadable(std::initializer_list<QColor> texts, std::initializer_list<QColor> grounds) {
    return std::ranges::all_of(texts, [&](const QColor& text) {
        return std::ranges::all_of(
            grounds, [&](const QColor& ground) { return contrast(text, ground) >= textContrast; });
    });
}

/// Whether texts of the accent, and texts on what is filled with it, can be read.
bool accentHolds(const ThemeColors& c) {
    const QColor card = over(c.surface, c.window);
    // Of tinted cards, the top of one that is hovered leaves the least.
    const bool holdsOnTints = std::ranges::all_of(
        std::array{c.accent, c.green, c.orange, c.red, c.teal, c.blue}, [&](const QColor& tint) {
            const QColor top = over(c.cardTop(tint), c.window);
            return areReadable({c.accent}, {top, over(c.hoverLight, top)});
        });
    return holdsOnTints &&
           areReadable({c.accent}, {c.window, c.sidebar, card, over(c.hover, c.window),
                                    over(c.hover, c.sidebar), over(c.hover, card),
                                    over(c.hoverLight, card), c.badgeGround(c.accent)}) &&
           areReadable({c.onAccent}, {c.accent, c.accentHover, c.accentPressed});
}

/// Whether texts and symbols on a selected row can be read.
bool selectionHolds(const ThemeColors& c) {
    const QColor row = over(c.sel, c.window);
    const QColor sidebarRow = over(c.sel, c.sidebar);
    return areReadable(
               {c.text, c.text2, c.text3, c.accent, c.green, c.orange, c.red, c.teal, c.blue},
               {row}) &&
           areReadable({c.text, c.text2}, {sidebarRow}) &&
           contrast(c.accent, sidebarRow) >= symbolContrast;
}

/// Takes the nearest lightness at which the accent holds; the colours stay as they were where there
/// is none. A selection that is too strong then for what stands on it is made fainter.
void adaptAccent(ThemeColors& colors, ThemeMode mode, const QColor& accent) {
    constexpr int steps = 200;
    const QColor hsl = accent.toHsl();
    const float hue = std::max(hsl.hslHueF(), 0.0F); // a grey has none
    ThemeColors adapted = colors;
    const auto holdsAt = [&](float lightness) {
        if (lightness < 0 || lightness > 1)
            return false;
        // Through whole parts of 255, as screens show it.
        const QColor tried = QColor::fromHslF(hue, hsl.hslSaturationF(), lightness);
        setAccent(adapted, mode, QColor(tried.rgb()));
        return accentHolds(adapted);
    };
    for (int step = 0; step <= steps; ++step) {
        const float distance = static_cast<float>(step) / steps;
        if (!holdsAt(hsl.lightnessF() - distance) && !holdsAt(hsl.lightnessF() + distance))
            continue;
        while (!selectionHolds(adapted) && adapted.sel.alpha() > 0)
            adapted.sel.setAlpha(adapted.sel.alpha() - 1);
        colors = adapted;
        return;
    }
}

} // namespace

QColor ThemeColors::cardTop(const QColor& tint) const {
    return over(withAlpha(tint, 0.07), surface);
}

QColor ThemeColors::cardBottom(const QColor& tint) const {
    return over(withAlpha(tint, 0.04), surface);
}

QColor ThemeColors::badgeGround(const QColor& color) const {
    return over(withAlpha(color, 0.13), window);
}

QColor ThemeColors::tickedGround(const QColor& color) const {
    return over(withAlpha(color, 0.18), window);
}

LiquidColors liquidColors(const QString& health) {
    if (health == QLatin1String("low"))
        return {QColor::fromRgbF(1, 0.68F, 0.16F), QColor::fromRgbF(1, 0.45F, 0.26F)};
    if (health == QLatin1String("critical"))
        return {QColor::fromRgbF(1, 0.28F, 0.33F), QColor::fromRgbF(0.95F, 0.18F, 0.55F)};
    return {QColor::fromRgbF(0.49F, 0.38F, 1), QColor::fromRgbF(0.29F, 0.66F, 1)};
}

ThemeColors themeColors(ThemeMode mode, const std::optional<QColor>& systemAccent) {
    ThemeColors colors = mode == ThemeMode::light ? lightColors() : darkColors();
    setAccent(colors, mode, colors.accent);
    if (systemAccent)
        adaptAccent(colors, mode, *systemAccent);
    return colors;
}

} // namespace tidewright
