#include "app/controls/Theme.h"

#include <QEasingCurve>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QMetaProperty>
#include <QPalette>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QSignalSpy>
#include <gmock/gmock.h>

#include <cmath>
#include <map>
#include <memory>
#include <numbers>

namespace tidewright {
namespace {

const char* const reduceMotionVariable = "TIDEWRIGHT_REDUCE_MOTION";

SystemLook lookOf(std::optional<bool> isDark, std::optional<QColor> accent = std::nullopt) {
    return {isDark, accent, std::nullopt};
}

class ThemeTest : public testing::Test {
protected:
    ThemeTest() : m_palette(QGuiApplication::palette()) {
        qunsetenv(reduceMotionVariable);
        setWindowColor(Qt::white);
    }
    ~ThemeTest() override {
        QGuiApplication::setPalette(m_palette);
        qunsetenv(reduceMotionVariable);
    }

    static void setWindowColor(const QColor& color) {
        QPalette palette;
        palette.setColor(QPalette::Window, color);
        QGuiApplication::setPalette(palette);
    }

private:
    QPalette m_palette;
};

// --- Light and dark

TEST_F(ThemeTest, QmlSeesTheColorsOfTheMode) {
    const std::map<std::string, QColor ThemeColors::*> expected{
        {"window", &ThemeColors::window},
        {"sidebar", &ThemeColors::sidebar},
        {"surface", &ThemeColors::surface},
        {"surfaceTop", &ThemeColors::surfaceTop},
        {"hair", &ThemeColors::hair},
        {"text", &ThemeColors::text},
        {"text2", &ThemeColors::text2},
        {"text3", &ThemeColors::text3},
        {"accent", &ThemeColors::accent},
        {"onAccent", &ThemeColors::onAccent},
        {"green", &ThemeColors::green},
        {"orange", &ThemeColors::orange},
        {"red", &ThemeColors::red},
        {"teal", &ThemeColors::teal},
        {"blue", &ThemeColors::blue},
        {"track", &ThemeColors::track},
        {"hover", &ThemeColors::hover},
        {"sel", &ThemeColors::sel},
        {"pressed", &ThemeColors::pressed},
        {"accentHover", &ThemeColors::accentHover},
        {"accentPressed", &ThemeColors::accentPressed},
        {"shadowNear", &ThemeColors::shadowNear},
        {"shadowFar", &ThemeColors::shadowFar},
        {"scrim", &ThemeColors::scrim},
    };
    Theme theme;
    for (const bool isDark : {false, true}) {
        theme.setSystemLook(lookOf(isDark));
        EXPECT_EQ(theme.isDark(), isDark);
        const ThemeColors colors =
            themeColors(isDark ? ThemeMode::dark : ThemeMode::light, std::nullopt);
        for (const auto& [name, color] : expected)
            EXPECT_EQ(theme.property(name.c_str()).value<QColor>(), colors.*color) << name;
        EXPECT_EQ(theme.cardTop(theme.orange()), colors.cardTop(colors.orange));
        EXPECT_EQ(theme.cardBottom(theme.orange()), colors.cardBottom(colors.orange));
        EXPECT_EQ(theme.badgeGround(theme.orange()), colors.badgeGround(colors.orange));
    }
}

TEST_F(ThemeTest, QmlCanWriteNothing) {
    const QMetaObject& meta = Theme::staticMetaObject;
    for (int index = meta.propertyOffset(); index < meta.propertyCount(); ++index) {
        EXPECT_FALSE(meta.property(index).isWritable()) << meta.property(index).name();
        EXPECT_TRUE(meta.property(index).isConstant() || meta.property(index).hasNotifySignal())
            << meta.property(index).name();
    }
}

TEST_F(ThemeTest, ModeSwitchesWithOneSignal) {
    Theme theme;
    theme.setSystemLook(lookOf(false));
    QSignalSpy spy(&theme, &Theme::colorsChanged);
    theme.setSystemLook(lookOf(true, QColor(Qt::yellow)));
    EXPECT_EQ(spy.count(), 1);
    EXPECT_EQ(theme.window(), QColor(0x14, 0x16, 0x1C));
    theme.setSystemLook(lookOf(true, QColor(Qt::yellow)));
    EXPECT_EQ(spy.count(), 1) << "nothing has changed";
    theme.setSystemLook(lookOf(true));
    EXPECT_EQ(spy.count(), 2) << "the accent has";
    EXPECT_EQ(theme.accent(), QColor(0x8A, 0x97, 0xFF));
}

TEST_F(ThemeTest, PaletteDecidesWhereTheSystemIsSilent) {
    setWindowColor(QColor(40, 40, 40));
    Theme theme;
    EXPECT_TRUE(theme.isDark());
    QSignalSpy spy(&theme, &Theme::colorsChanged);
    setWindowColor(QColor(240, 240, 240));
    EXPECT_FALSE(theme.isDark());
    EXPECT_EQ(spy.count(), 1);

    theme.setSystemLook(lookOf(false));
    setWindowColor(QColor(40, 40, 40));
    EXPECT_FALSE(theme.isDark()) << "the system has spoken";
    EXPECT_EQ(spy.count(), 1);
    theme.setSystemLook({});
    EXPECT_TRUE(theme.isDark()) << "and says nothing any more";
}

TEST_F(ThemeTest, LiquidAndHealthHaveTheirColors) {
    struct Liquid {
        const char* health;
        double top[3];
        double bottom[3];
    };
    const Liquid liquids[] = {
        {"good", {0.49, 0.38, 1.0}, {0.29, 0.66, 1.0}},
        {"low", {1.0, 0.68, 0.16}, {1.0, 0.45, 0.26}},
        {"critical", {1.0, 0.28, 0.33}, {0.95, 0.18, 0.55}},
    };
    const auto expectColor = [](const QVariant& found, const double(&parts)[3]) {
        const auto color = found.value<QColor>();
        EXPECT_NEAR(color.redF(), parts[0], 1e-4);
        EXPECT_NEAR(color.greenF(), parts[1], 1e-4);
        EXPECT_NEAR(color.blueF(), parts[2], 1e-4);
        EXPECT_EQ(color.alphaF(), 1);
    };
    Theme theme;
    for (const bool isDark : {false, true}) {
        theme.setSystemLook(lookOf(isDark));
        for (const Liquid& each : liquids) {
            SCOPED_TRACE(each.health);
            expectColor(theme.liquidTop().value(QLatin1String(each.health)), each.top);
            expectColor(theme.liquidBottom().value(QLatin1String(each.health)), each.bottom);
        }
        const QVariantMap health = theme.healthColors();
        EXPECT_EQ(health.value(QStringLiteral("good")).value<QColor>(), theme.accent());
        EXPECT_EQ(health.value(QStringLiteral("low")).value<QColor>(), theme.orange());
        EXPECT_EQ(health.value(QStringLiteral("critical")).value<QColor>(), theme.red());
        const QVariantMap severity = theme.severityColors();
        EXPECT_EQ(severity.value(QStringLiteral("tip")).value<QColor>(), theme.teal());
        EXPECT_EQ(severity.value(QStringLiteral("notice")).value<QColor>(), theme.accent());
        EXPECT_EQ(severity.value(QStringLiteral("warning")).value<QColor>(), theme.orange());
        EXPECT_EQ(severity.value(QStringLiteral("critical")).value<QColor>(), theme.red());
        EXPECT_EQ(theme.freed().name(), QStringLiteral("#2dbe68"));
        EXPECT_NEAR(theme.freed().alphaF(), 0.85, 1e-4);
    }
}

// --- QML

TEST_F(ThemeTest, BindingsFollowTheSingletonThatTheProgramTells) {
    qmlRegisterTypesAndRevisions<Theme>("ThemeTest", 1);
    QQmlEngine engine;
    auto* const theme = engine.singletonInstance<Theme*>(qmlTypeId("ThemeTest", 1, 0, "Theme"));
    ASSERT_NE(theme, nullptr);
    theme->setSystemLook(lookOf(false));
    QQmlComponent component(&engine);
    component.setData("import QtQml\n"
                      "import ThemeTest\n"
                      "QtObject {\n"
                      "    property var text: Theme.text\n"
                      "    property var badge: Theme.badgeGround(Theme.green)\n"
                      "    property var health: Theme.healthColors['low']\n"
                      "    property var liquid: Theme.liquidTop['low']\n"
                      "    property var font: Theme.semibold(Theme.title3)\n"
                      "    property real radius: Theme.cardRadius\n"
                      "    property real curve: Theme.springCurve.length\n"
                      "}\n",
                      QUrl());
    const std::unique_ptr<QObject> object(component.create());
    ASSERT_NE(object, nullptr) << component.errorString().toStdString();
    const auto colorOf = [&](const char* name) { return object->property(name).value<QColor>(); };
    for (const bool isDark : {false, true}) {
        theme->setSystemLook(lookOf(isDark));
        EXPECT_EQ(colorOf("text"), theme->text());
        EXPECT_EQ(colorOf("badge"), theme->badgeGround(theme->green()));
        EXPECT_EQ(colorOf("health"), theme->orange());
        EXPECT_EQ(colorOf("liquid"), QColor::fromRgbF(1, 0.68F, 0.16F));
    }
    EXPECT_EQ(object->property("font").value<QFont>(), theme->semibold(theme->title3()));
    EXPECT_EQ(object->property("radius").toDouble(), 16);
    EXPECT_EQ(object->property("curve").toDouble(), 60);
}

// --- Motion

std::vector<int> motionOf(const Theme& theme) {
    return {theme.springDuration(), theme.snappyDuration(), theme.crossFadeDuration(),
            theme.sheetRise()};
}

const std::vector<int> moving{514, 367, 180, 12};
const std::vector<int> still{0, 0, 0, 0};

TEST_F(ThemeTest, NothingMovesWhereTheSystemWantsSo) {
    Theme theme;
    EXPECT_FALSE(theme.reduceMotion());
    EXPECT_EQ(motionOf(theme), moving);
    QSignalSpy motion(&theme, &Theme::reduceMotionChanged);
    QSignalSpy colors(&theme, &Theme::colorsChanged);
    theme.setSystemLook({std::nullopt, std::nullopt, true});
    EXPECT_TRUE(theme.reduceMotion());
    EXPECT_EQ(motionOf(theme), still);
    theme.setSystemLook({std::nullopt, std::nullopt, false});
    EXPECT_EQ(motionOf(theme), moving);
    EXPECT_EQ(motion.count(), 2);
    EXPECT_EQ(colors.count(), 0);
}

TEST_F(ThemeTest, EnvironmentDecidesAboutMotionBeforeTheSystem) {
    qputenv(reduceMotionVariable, "1");
    Theme stillTheme;
    EXPECT_EQ(motionOf(stillTheme), still);
    stillTheme.setSystemLook({std::nullopt, std::nullopt, false});
    EXPECT_EQ(motionOf(stillTheme), still);

    qputenv(reduceMotionVariable, "0");
    Theme movingTheme;
    movingTheme.setSystemLook({std::nullopt, std::nullopt, true});
    EXPECT_EQ(motionOf(movingTheme), moving);

    qputenv(reduceMotionVariable, "yes");
    Theme theme;
    theme.setSystemLook({std::nullopt, std::nullopt, true});
    EXPECT_TRUE(theme.reduceMotion()) << "a word that means nothing changes nothing";
}

TEST_F(ThemeTest, SpringSettlesAsACriticallyDampedOneAndNeverOvershoots) {
    const Theme theme;
    const QVariantList numbers = theme.springCurve();
    ASSERT_EQ(numbers.size() % 6, 0);
    ASSERT_LE(numbers.size() / 6, 10) << "Qt writes beyond its room for ten";
    QEasingCurve curve(QEasingCurve::BezierSpline);
    for (qsizetype index = 0; index < numbers.size(); index += 6) {
        const auto point = [&](qsizetype offset) {
            return QPointF(numbers[index + offset].toDouble(),
                           numbers[index + offset + 1].toDouble());
        };
        curve.addCubicBezierSegment(point(0), point(2), point(4));
    }
    EXPECT_EQ(numbers[numbers.size() - 2].toDouble(), 1);
    EXPECT_EQ(numbers.back().toDouble(), 1);

    for (const auto& [response, milliseconds] :
         {std::pair(Theme::springResponse, theme.springDuration()),
          std::pair(Theme::snappyResponse, theme.snappyDuration())}) {
        const double frequency = 2 * std::numbers::pi / response;
        double before = 0;
        for (int step = 0; step <= 200; ++step) {
            const double progress = step / 200.0;
            const double time = frequency * progress * milliseconds / 1000;
            const double spring = 1 - (1 + time) * std::exp(-time);
            const double position = curve.valueForProgress(progress);
            EXPECT_NEAR(position, spring, 0.003) << progress;
            EXPECT_GE(position, before - 1e-6) << progress;
            EXPECT_LE(position, 1 + 1e-9) << progress;
            before = position;
        }
    }
    EXPECT_EQ(theme.springDamping, 1);
}

// --- Fonts

struct TypeStyle {
    const char* name;
    int size;
    QFont::Weight weight;
};

const std::vector<TypeStyle> styles{
    {"largeTitle", 26, QFont::Normal}, {"title", 22, QFont::Normal},
    {"title2", 17, QFont::Normal},     {"title3", 15, QFont::Normal},
    {"headline", 13, QFont::DemiBold}, {"body", 13, QFont::Normal},
    {"callout", 12, QFont::Normal},    {"subheadline", 11, QFont::Normal},
    {"caption", 10, QFont::Normal},    {"rowTitle", 13, QFont::Medium},
    {"figure", 17, QFont::DemiBold},   {"bigFigure", 48, QFont::Bold},
};

TEST_F(ThemeTest, FontsAreThoseOfTheScale) {
    const Theme theme;
    for (const TypeStyle& style : styles) {
        const auto font = theme.property(style.name).value<QFont>();
        EXPECT_EQ(font.pixelSize(), style.size) << style.name;
        EXPECT_EQ(font.weight(), style.weight) << style.name;
    }
    EXPECT_LT(theme.bigFigure().letterSpacing(), 0);
    EXPECT_EQ(theme.medium(theme.title3()).weight(), QFont::Medium);
    EXPECT_EQ(theme.semibold(theme.title3()).weight(), QFont::DemiBold);
    EXPECT_EQ(theme.bold(theme.title3()).weight(), QFont::Bold);
    EXPECT_EQ(theme.bold(theme.title3()).pixelSize(), 15);
}

TEST_F(ThemeTest, DigitsAreAsWideAsEachOther) {
    const Theme theme;
    for (const TypeStyle& style : styles) {
        const QFontMetricsF metrics(theme.property(style.name).value<QFont>());
        const double width = metrics.horizontalAdvance(QStringLiteral("8"));
        EXPECT_GT(width, 0);
        for (char digit = '0'; digit <= '9'; ++digit)
            EXPECT_EQ(metrics.horizontalAdvance(QString(QLatin1Char(digit))), width)
                << digit << " in " << style.name;
        for (const auto& [one, other] :
             {std::pair("111.1 GB", "888.8 GB"), std::pair("1,174 kB", "2,000 kB"),
              std::pair("11 of 14", "47 of 70")})
            EXPECT_EQ(metrics.horizontalAdvance(QLatin1String(one)),
                      metrics.horizontalAdvance(QLatin1String(other)))
                << one << " in " << style.name;
    }
}

#ifndef Q_OS_MACOS // which brings the font itself
TEST_F(ThemeTest, BundledFontIsUsedInEachWeight) {
    const Theme theme;
    const QString family = theme.body().family();
    EXPECT_EQ(family.toStdString(), "Inter Tabular");
    EXPECT_TRUE(QFontInfo(theme.body()).exactMatch());
    EXPECT_THAT(QFontDatabase::styles(family),
                testing::UnorderedElementsAre(QStringLiteral("Regular"), QStringLiteral("Medium"),
                                              QStringLiteral("SemiBold"), QStringLiteral("Bold")));
    double before = 0;
    for (const QFont::Weight weight :
         {QFont::Normal, QFont::Medium, QFont::DemiBold, QFont::Bold}) {
        QFont font = theme.title();
        font.setWeight(weight);
        EXPECT_EQ(QFontInfo(font).weight(), weight);
        const double width =
            QFontMetricsF(font).horizontalAdvance(QStringLiteral("Review cleanup"));
        EXPECT_GT(width, before) << "a heavier weight is wider, unless it is the same file";
        before = width;
    }
}

TEST_F(ThemeTest, BundledFontHasTheLettersOfTheScreens) {
    const QFontMetricsF metrics(Theme().body());
    for (const char32_t letter : std::u32string(U"Az09éßñžåđğșő—–…’“”•·→←≥×%&~/\\_`@ΔЖẠ"))
        EXPECT_TRUE(metrics.inFontUcs4(letter)) << static_cast<unsigned>(letter);
}
#endif

// --- Measures

TEST_F(ThemeTest, MeasuresAreThoseOfTheDesign) {
    const std::map<std::string, double> expected{
        {"windowWidth", 1180},        {"windowHeight", 760},      {"windowMinimumWidth", 900},
        {"windowMinimumHeight", 600}, {"windowPaddingAside", 32}, {"windowPaddingAbove", 24},
        {"sidebarMinimumWidth", 200}, {"sidebarWidth", 220},      {"sidebarMaximumWidth", 280},
        {"sidebarRowHeight", 30},     {"sidebarRowRadius", 8},    {"sidebarRowPadding", 10},
        {"cardSpacing", 14},          {"blockSpacing", 26},       {"orbSize", 210},
        {"orbSpacing", 36},           {"cardRadius", 16},         {"cardPadding", 16},
        {"listRadius", 12},           {"sheetRadius", 18},        {"buttonRadius", 8},
        {"largeButtonRadius", 10},    {"badgeRadius", 9},         {"toolbarButtonHeight", 30},
        {"largeButtonHeight", 36},    {"smallButtonHeight", 26},  {"tableRowPadding", 7},
        {"rowSymbolSize", 16},        {"cardSymbolSize", 22},     {"emptySymbolSize", 34},
        {"symbolLineWidth", 1.75},    {"symbolLineBase", 24},     {"focusRingWidth", 2},
        {"focusRingDistance", 2},     {"shadowNearOffset", 1},    {"shadowNearBlur", 2},
        {"shadowFarOffset", 8},       {"shadowFarBlur", 24},      {"springResponse", 0.35},
        {"snappyResponse", 0.25},     {"springDamping", 1},
    };
    const Theme theme;
    for (const auto& [name, value] : expected)
        EXPECT_EQ(theme.property(name.c_str()).toDouble(), value) << name;
}

} // namespace
} // namespace tidewright
