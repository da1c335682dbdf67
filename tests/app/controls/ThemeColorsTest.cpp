#include "app/controls/ThemeColors.h"

#include <gmock/gmock.h>

#include <cmath>
#include <map>
#include <string>
#include <vector>

namespace tidewright {
namespace {

using Token = QColor ThemeColors::*;

// --- The tokens

struct Named {
    const char* name;
    Token token;
    const char* light; ///< "#RRGGBB", or "R,G,B,opacity"
    const char* dark;
};

const std::vector<Named> tokens{
    {"window", &ThemeColors::window, "#F4F5F8", "#14161C"},
    {"sidebar", &ThemeColors::sidebar, "#E9EBF1", "#1A1D25"},
    {"surface", &ThemeColors::surface, "255,255,255,.72", "255,255,255,.045"},
    {"surfaceTop", &ThemeColors::surfaceTop, "255,255,255,.95", "255,255,255,.11"},
    {"hair", &ThemeColors::hair, "18,22,33,.09", "255,255,255,.09"},
    {"text", &ThemeColors::text, "#14171F", "#F1F3F8"},
    {"text2", &ThemeColors::text2, "#565D6D", "#A9B0C0"},
    {"text3", &ThemeColors::text3, "#5D6473", "#969EAF"},
    {"accent", &ThemeColors::accent, "#4250DD", "#8A97FF"},
    {"onAccent", &ThemeColors::onAccent, "#FFFFFF", "#10121A"},
    {"green", &ThemeColors::green, "#157038", "#4CD07D"},
    {"orange", &ThemeColors::orange, "#9A4A07", "#FFAB52"},
    {"red", &ThemeColors::red, "#BA2130", "#FF7A80"},
    {"teal", &ThemeColors::teal, "#0A6B70", "#4FD0D4"},
    {"blue", &ThemeColors::blue, "#1B5AC0", "#7DB0FF"},
    {"track", &ThemeColors::track, "20,23,31,.12", "255,255,255,.13"},
    {"hover", &ThemeColors::hover, "20,23,31,.05", "255,255,255,.06"},
    {"sel", &ThemeColors::sel, "66,80,221,.13", "138,151,255,.18"},
    {"shadowNear", &ThemeColors::shadowNear, "0,0,0,.05", "0,0,0,.30"},
    {"shadowFar", &ThemeColors::shadowFar, "0,0,0,.05", "0,0,0,.22"},
};

QColor parsed(const QString& text) {
    const QStringList parts = text.split(QLatin1Char(','));
    if (parts.size() == 1)
        return QColor(text);
    QColor color(parts[0].toInt(), parts[1].toInt(), parts[2].toInt());
    color.setAlphaF(parts[3].toFloat());
    return color;
}

TEST(ThemeColorsTest, TokensAreThoseOfTheTable) {
    const ThemeColors light = themeColors(ThemeMode::light, std::nullopt);
    const ThemeColors dark = themeColors(ThemeMode::dark, std::nullopt);
    for (const Named& each : tokens) {
        EXPECT_EQ(light.*each.token, parsed(QLatin1String(each.light))) << each.name;
        EXPECT_EQ(dark.*each.token, parsed(QLatin1String(each.dark))) << each.name;
    }
}

// --- Contrast, computed apart from the code that is tested

struct Rgb {
    double red, green, blue;
};

Rgb over(const QColor& front, const Rgb& back) {
    const double alpha = front.alphaF();
    const auto part = [&](double inFront, double behind) {
        return inFront * alpha + behind * (1 - alpha);
    };
    return {part(front.redF(), back.red), part(front.greenF(), back.green),
            part(front.blueF(), back.blue)};
}

double luminance(const Rgb& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

double contrast(const Rgb& one, const Rgb& other) {
    const double light = std::max(luminance(one), luminance(other));
    const double dark = std::min(luminance(one), luminance(other));
    return (light + 0.05) / (dark + 0.05);
}

TEST(ThemeColorsTest, ContrastIsComputedAsWcagDefinesIt) {
    EXPECT_NEAR(contrast({0, 0, 0}, {1, 1, 1}), 21, 1e-9);
    EXPECT_NEAR(contrast(over(QColor(0x77, 0x77, 0x77), {}), {1, 1, 1}), 4.478, 0.001);
    const Rgb half = over(QColor(255, 255, 255, 51), {0, 0, 0});
    EXPECT_NEAR(half.red, 0.2, 1e-6);
}

using Grounds = std::map<std::string, Rgb>;

const std::vector<std::pair<const char*, Token>> tints{
    {"accent", &ThemeColors::accent}, {"green", &ThemeColors::green},
    {"orange", &ThemeColors::orange}, {"red", &ThemeColors::red},
    {"teal", &ThemeColors::teal},     {"blue", &ThemeColors::blue},
};
const std::vector<std::pair<const char*, Token>> badgeColors{
    {"accent", &ThemeColors::accent}, {"green", &ThemeColors::green},
    {"orange", &ThemeColors::orange}, {"red", &ThemeColors::red},
    {"teal", &ThemeColors::teal},     {"blue", &ThemeColors::blue},
    {"text2", &ThemeColors::text2},   {"text3", &ThemeColors::text3},
};

/// What treemaps have places for: what was decided, and "accent" for what was not.
const std::vector<std::pair<const char*, Token>> decisions{
    {"green", &ThemeColors::green},   {"orange", &ThemeColors::orange},
    {"text2", &ThemeColors::text2},   {"blue", &ThemeColors::blue},
    {"accent", &ThemeColors::accent},
};

/// What stands on what, by name, from the window upwards: "window sel" is a selected row.
Grounds groundsOf(const ThemeColors& colors) {
    const Rgb window = over(colors.window, {});
    const Rgb sidebar = over(colors.sidebar, {});
    const Rgb card = over(colors.surface, window);
    Grounds grounds{
        {"window", window},
        {"window hover", over(colors.hover, window)},
        {"window pressed", over(colors.pressed, window)},
        {"window sel", over(colors.sel, window)},
        {"window sel hover", over(colors.hover, over(colors.sel, window))},
        {"window track", over(colors.track, window)},
        {"sidebar", sidebar},
        {"sidebar hover", over(colors.hover, sidebar)},
        {"sidebar pressed", over(colors.pressed, sidebar)},
        {"sidebar sel", over(colors.sel, sidebar)},
        {"card", card},
        {"card hover", over(colors.hover, card)},
        {"card pressed", over(colors.pressed, card)},
        {"card sel", over(colors.sel, card)},
        {"card surface", over(colors.surface, card)},
        {"card surfaceTop", over(colors.surfaceTop, card)},
        {"card surface pressed", over(colors.pressed, over(colors.surface, card))},
        {"window surfaceTop", over(colors.surfaceTop, window)},
        {"card hovered", over(colors.hoverLight, card)},
        {"raised", over(colors.raised, {})},
        {"accent", over(colors.accent, {})},
        {"accentHover", over(colors.accentHover, {})},
        {"accentPressed", over(colors.accentPressed, {})},
    };
    for (const auto& [name, token] : decisions) {
        const Rgb place = over(colors.badgeGround(colors.*token), window);
        const Rgb ticked = over(colors.tickedGround(colors.*token), window);
        grounds[std::string("map ") + name] = place;
        grounds[std::string("map ") + name + " hovered"] = over(colors.hoverLight, place);
        grounds[std::string("map ") + name + " ticked"] = ticked;
        grounds[std::string("map ") + name + " ticked, hovered"] = over(colors.hoverLight, ticked);
    }
    grounds["map rest hovered"] = over(colors.hoverLight, over(colors.hover, window));
    for (const auto& [name, token] : tints) {
        const Rgb top = over(colors.cardTop(colors.*token), window);
        const Rgb bottom = over(colors.cardBottom(colors.*token), window);
        const std::string tinted = std::string("card tinted ") + name;
        grounds[tinted + " top"] = top;
        grounds[tinted + " bottom"] = bottom;
        grounds[tinted + " top, hovered"] = over(colors.hoverLight, top);
        grounds[tinted + " bottom, hovered"] = over(colors.hoverLight, bottom);
        grounds[tinted + " top, pressed"] = over(colors.pressed, top);
        grounds[tinted + " top, button"] = over(colors.surface, top);
        grounds[tinted + " bottom, button"] = over(colors.surface, bottom);
        grounds[tinted + " bottom, button hovered"] = over(colors.surfaceTop, bottom);
        grounds[tinted + " bottom, button pressed"] =
            over(colors.pressed, over(colors.surface, bottom));
    }
    return grounds;
}

const std::map<std::string, Token> inks = [] {
    std::map<std::string, Token> byName;
    for (const Named& each : tokens)
        byName[each.name] = each.token;
    return byName;
}();

const std::vector<std::string> primary{"text", "text2"};
const std::vector<std::string> onButtons{"text", "text2", "red"};
const std::vector<std::string> all{"text",   "text2", "text3", "accent", "green",
                                   "orange", "red",   "teal",  "blue"};

struct Use {
    std::string ground;
    std::vector<std::string> texts;   ///< 4.5:1
    std::vector<std::string> symbols; ///< 3:1
};

/// Which texts and symbols stand on which ground. What is a text there may be a symbol as well.
std::vector<Use> uses() {
    std::vector<Use> uses{
        {"window", all, {}},
        {"window hover", all, {}},
        {"window pressed", primary, all},
        {"window sel", all, {}},
        {"window sel hover", primary, all},
        {"window track", primary, all},
        {"window surfaceTop", onButtons, all},
        {"sidebar", all, {}},
        {"sidebar hover", all, {}},
        {"sidebar pressed", primary, all},
        {"sidebar sel", primary, all},
        {"card", all, {}},
        {"card hover", all, {}},
        {"card pressed", onButtons, all},
        {"card sel", primary, all},
        {"card surface", all, {}},
        {"card surfaceTop", onButtons, all},
        {"card surface pressed", onButtons, all},
        {"card hovered", all, {}},
        {"raised", primary, all},
        {"accent", {"onAccent"}, {}},
        {"accentHover", {"onAccent"}, {}},
        {"accentPressed", {"onAccent"}, {}},
    };
    for (const auto& [name, token] : decisions)
        for (const char* const state : {"", " hovered", " ticked", " ticked, hovered"})
            if (token != &ThemeColors::accent ||
                std::string(state).find("ticked") == std::string::npos)
                uses.push_back({std::string("map ") + name + state, primary, {name}});
    uses.push_back({"map rest hovered", primary, {}});
    for (const auto& [name, token] : tints) {
        const std::string tinted = std::string("card tinted ") + name;
        const std::vector<std::string> texts{"text", "text2", "text3", "accent", name};
        uses.push_back({tinted + " top", texts, {}});
        uses.push_back({tinted + " bottom", texts, {}});
        const std::vector<std::string> hovered{"text", "text2", "accent", name};
        uses.push_back({tinted + " top, hovered", hovered, all});
        uses.push_back({tinted + " bottom, hovered", hovered, all});
        uses.push_back({tinted + " top, pressed", primary, all});
        uses.push_back({tinted + " top, button", {"text"}, all});
        uses.push_back({tinted + " bottom, button", {"text"}, all});
        uses.push_back({tinted + " bottom, button hovered", {"text"}, all});
        uses.push_back({tinted + " bottom, button pressed", {"text"}, all});
    }
    return uses;
}

/// The pairs whose contrast is too low, empty where none is.
std::string faintPairs(const ThemeColors& colors) {
    const Grounds grounds = groundsOf(colors);
    std::string faint;
    const auto check = [&](const QColor& ink, const Rgb& ground, double least,
                           const std::string& name) {
        const double found = contrast(over(ink, ground), ground);
        if (found < least)
            faint += name + ": " + std::to_string(found) + "\n";
    };
    for (const Use& use : uses()) {
        const Rgb ground = grounds.at(use.ground);
        for (const std::string& text : use.texts)
            check(colors.*inks.at(text), ground, 4.5, text + " on " + use.ground);
        for (const std::string& symbol : use.symbols)
            check(colors.*inks.at(symbol), ground, 3, "symbol " + symbol + " on " + use.ground);
    }
    for (const auto& [name, token] : badgeColors) {
        for (const auto& [groundName, ground] : grounds) {
            const Rgb badge = over(colors.badgeGround(colors.*token), ground);
            check(colors.*token, badge, 4.5, std::string(name) + " badge on " + groundName);
        }
    }
    return faint;
}

class ThemeContrastTest : public testing::TestWithParam<ThemeMode> {};

TEST_P(ThemeContrastTest, WhatStandsTogetherCanBeRead) {
    EXPECT_EQ(faintPairs(themeColors(GetParam(), std::nullopt)), "");
}

TEST_P(ThemeContrastTest, AnyAccentOfTheSystemIsMadeReadable) {
    for (int hue = 0; hue < 360; hue += 24) {
        for (const int saturation : {0, 90, 180, 255}) {
            for (const int lightness : {0, 40, 90, 128, 170, 220, 255}) {
                const QColor accent = QColor::fromHsl(hue, saturation, lightness);
                const ThemeColors colors = themeColors(GetParam(), accent);
                EXPECT_EQ(faintPairs(colors), "") << accent.name().toStdString();
                if (saturation > 0 && lightness > 0 && lightness < 255) {
                    EXPECT_NEAR(colors.accent.hslHue(), accent.hslHue(), 12)
                        << accent.name().toStdString();
                }
            }
        }
    }
}

TEST_P(ThemeContrastTest, AccentOfTheSystemKeepsItsHue) {
    for (const QColor accent : {QColor(255, 204, 0), QColor(0x35, 0x84, 0xE4), QColor(0, 60, 0)}) {
        const ThemeColors colors = themeColors(GetParam(), accent);
        EXPECT_NEAR(colors.accent.hslHue(), accent.hslHue(), 2) << accent.name().toStdString();
        EXPECT_EQ(colors.sel.rgb(), colors.accent.rgb());
        const float usual = themeColors(GetParam(), std::nullopt).sel.alphaF();
        EXPECT_LE(colors.sel.alphaF(), usual);
        EXPECT_GE(colors.sel.alphaF(), usual / 2) << "a selection can be seen";
    }
    for (const QColor grey : {QColor(Qt::white), QColor(Qt::black), QColor(128, 128, 128)})
        EXPECT_EQ(themeColors(GetParam(), grey).accent.hslSaturation(), 0);
}

TEST_P(ThemeContrastTest, AccentOfTheSystemIsMovedNoFurtherThanNeeded) {
    const QColor own = themeColors(GetParam(), std::nullopt).accent;
    EXPECT_EQ(themeColors(GetParam(), own).accent, own);
    // The lightness beyond which it would hold is a step of 1/200 away at most.
    const QColor yellow(255, 204, 0);
    const QColor adapted = themeColors(GetParam(), yellow).accent;
    const float way = yellow.lightnessF() - adapted.lightnessF();
    if (way == 0)
        return;
    const float back = adapted.lightnessF() + std::copysign(0.02F, way);
    ThemeColors less =
        themeColors(GetParam(), QColor::fromHslF(yellow.hslHueF(), yellow.hslSaturationF(), back));
    EXPECT_NEAR(less.accent.lightnessF(), adapted.lightnessF(), 0.01);
}

TEST_P(ThemeContrastTest, NothingElseFollowsTheAccentOfTheSystem) {
    ThemeColors colors = themeColors(GetParam(), QColor(255, 204, 0));
    const ThemeColors own = themeColors(GetParam(), std::nullopt);
    EXPECT_NE(colors, own);
    colors.accent = own.accent;
    colors.sel = own.sel;
    colors.accentHover = own.accentHover;
    colors.accentPressed = own.accentPressed;
    EXPECT_EQ(colors, own);
}

INSTANTIATE_TEST_SUITE_P(Both,
                         ThemeContrastTest,
                         testing::Values(ThemeMode::light, ThemeMode::dark),
                         [](const auto& mode) {
                             return mode.param == ThemeMode::light ? "light" : "dark";
                         });

TEST(ThemeColorsTest, TintedCardAndBadgeHaveTheirShareOfTheColor) {
    const ThemeColors light = themeColors(ThemeMode::light, std::nullopt);
    const auto shown = [&](const QColor& color) {
        const Rgb rgb = over(color, over(light.window, {}));
        return QColor::fromRgbF(static_cast<float>(rgb.red), static_cast<float>(rgb.green),
                                static_cast<float>(rgb.blue))
            .name()
            .toStdString();
    };
    EXPECT_EQ(shown(light.cardTop(light.orange)), "#f5f0ec");
    EXPECT_EQ(shown(light.cardBottom(light.orange)), "#f8f5f3");
    EXPECT_EQ(shown(light.badgeGround(light.orange)), "#e8dfd9");
    EXPECT_EQ(light.badgeGround(light.orange).alpha(), 255);
    EXPECT_EQ(shown(light.tickedGround(light.green)), "#ccddd5");
    EXPECT_EQ(light.tickedGround(light.green).alpha(), 255);
    EXPECT_GT(light.accentHover.lightness(), light.accent.lightness());
    EXPECT_LT(light.accentPressed.lightness(), light.accent.lightness());
}

} // namespace
} // namespace tidewright
