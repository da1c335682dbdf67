#include "app/controls/Theme.h"

#include <QEvent>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPalette>

#include <cmath>
#include <numbers>

namespace tidewright {

namespace {

// A critically damped spring has come this many times its own time constant when all but a
// thousandth of the way is done: (1 + t) e^-t = 0.001.
constexpr double settledAfter = 9.2334;

int springMilliseconds(double response) {
    const double timeConstant = response / (2 * std::numbers::pi);
    return static_cast<int>(std::lround(settledAfter * timeConstant * 1000));
}

/// Where the spring is at a fraction of its duration, and how fast it goes there.
struct SpringState {
    double position = 0;
    double speed = 0;
};

SpringState springAt(double fraction) {
    const double settled = 1 - (1 + settledAfter) * std::exp(-settledAfter);
    const double time = settledAfter * fraction;
    return {(1 - (1 + time) * std::exp(-time)) / settled,
            settledAfter * time * std::exp(-time) / settled};
}

ThemeMode modeOfPalette() {
    const bool isDark = QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
    return isDark ? ThemeMode::dark : ThemeMode::light;
}

ThemeMode modeFor(const SystemLook& look) {
    if (!look.isDark)
        return modeOfPalette();
    return *look.isDark ? ThemeMode::dark : ThemeMode::light;
}

bool reducesMotion(const SystemLook& look) {
    const QByteArray forced = qgetenv("TIDEWRIGHT_REDUCE_MOTION");
    if (forced == "1" || forced == "0")
        return forced == "1";
    return look.reducesMotion.value_or(false);
}

/// The family that is bundled, or the system's own where none is.
QString loadFamily() {
    QString family = QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
    for (const char* const weight : {"Regular", "Medium", "SemiBold", "Bold"}) {
        const int font = QFontDatabase::addApplicationFont(
            QStringLiteral(":/tidewright/fonts/InterTabular-%1.otf").arg(QLatin1String(weight)));
        if (font != -1)
            family = QFontDatabase::applicationFontFamilies(font).constFirst();
    }
    return family;
}

QFont inWeight(QFont font, QFont::Weight weight) {
    font.setWeight(weight);
    return font;
}

template <typename Color>
QVariantMap byHealth(const Color& colorOf) {
    QVariantMap colors;
    for (const char* const name : {"good", "low", "critical"}) {
        const QString health = QString::fromLatin1(name);
        colors[health] = colorOf(health);
    }
    return colors;
}

} // namespace

Theme::Theme(QObject* parent)
    : QObject(parent),
      m_mode(modeFor(m_look)),
      m_colors(themeColors(m_mode, m_look.accent)),
      m_reduceMotion(reducesMotion(m_look)) {
    QCoreApplication::instance()->installEventFilter(this);
}

void Theme::setSystemLook(const SystemLook& look) {
    m_look = look;
    update();
}

bool Theme::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange &&
        watched == QCoreApplication::instance())
        update();
    return QObject::eventFilter(watched, event);
}

void Theme::update() {
    const ThemeMode mode = modeFor(m_look);
    const ThemeColors colors = themeColors(mode, m_look.accent);
    const bool reduceMotion = reducesMotion(m_look);
    const bool haveColorsChanged = mode != m_mode || colors != m_colors;
    const bool hasMotionChanged = reduceMotion != m_reduceMotion;
    m_mode = mode;
    m_colors = colors;
    m_reduceMotion = reduceMotion;
    if (haveColorsChanged)
        Q_EMIT colorsChanged();
    if (hasMotionChanged)
        Q_EMIT reduceMotionChanged();
}

QVariantMap Theme::healthColors() const {
    return {{QStringLiteral("good"), m_colors.accent},
            {QStringLiteral("low"), m_colors.orange},
            {QStringLiteral("critical"), m_colors.red}};
}

QVariantMap Theme::severityColors() const {
    return {{QStringLiteral("tip"), m_colors.teal},
            {QStringLiteral("notice"), m_colors.accent},
            {QStringLiteral("warning"), m_colors.orange},
            {QStringLiteral("critical"), m_colors.red}};
}

QVariantMap Theme::liquidTop() const {
    return byHealth([](const QString& health) { return liquidColors(health).top; });
}

QVariantMap Theme::liquidBottom() const {
    return byHealth([](const QString& health) { return liquidColors(health).bottom; });
}

QVariantMap Theme::decisionColors() const {
    return {{QStringLiteral("clean"), m_colors.green},
            {QStringLiteral("ask"), m_colors.orange},
            {QStringLiteral("keep"), m_colors.text2},
            {QStringLiteral("info"), m_colors.blue},
            {QString(), m_colors.accent}};
}

QVariantMap Theme::decisionGrounds() const {
    QVariantMap grounds = decisionColors();
    for (QVariant& each : grounds)
        each = m_colors.badgeGround(each.value<QColor>());
    return grounds;
}

QVariantMap Theme::tickedGrounds() const {
    // The accent, which may be the system's, would leave too little contrast.
    QVariantMap grounds = decisionColors();
    for (auto each = grounds.begin(); each != grounds.end(); ++each) {
        const auto color = each->value<QColor>();
        *each = each.key().isEmpty() ? m_colors.badgeGround(color) : m_colors.tickedGround(color);
    }
    return grounds;
}

QColor Theme::freed() const {
    QColor color(0x2D, 0xBE, 0x68);
    color.setAlphaF(0.85F);
    return color;
}

int Theme::springDuration() const {
    return m_reduceMotion ? 0 : springMilliseconds(springResponse);
}

int Theme::snappyDuration() const {
    return m_reduceMotion ? 0 : springMilliseconds(snappyResponse);
}

QVariantList Theme::springCurve() const {
    // Each has the spring's speed at both ends. Qt has room for ten and checks nothing; the spring
    // bends most at the beginning, so they are shorter there.
    constexpr int pieces = 10;
    const auto boundary = [](int piece) {
        return std::pow(static_cast<double>(piece) / pieces, 1.5);
    };
    QVariantList curve;
    for (int piece = 0; piece < pieces; ++piece) {
        const double start = boundary(piece);
        const double end = boundary(piece + 1);
        const double third = (end - start) / 3;
        const SpringState atStart = springAt(start);
        const SpringState atEnd = springAt(end);
        curve << start + third << atStart.position + atStart.speed * third;
        curve << end - third << atEnd.position - atEnd.speed * third;
        curve << end << atEnd.position;
    }
    return curve;
}

/// The platform's points are pixels at 100 %, where Qt's depend on the resolution of the screen.
QFont Theme::font(int pixels, QFont::Weight weight) {
    static const QString family = loadFamily();
    QFont made(family);
    made.setPixelSize(pixels);
    made.setWeight(weight);
#if QT_VERSION >= QT_VERSION_CHECK(6, 7, 0)
    made.setFeature("tnum", 1); // the bundled family has no other digits
#endif
    return made;
}

QFont Theme::largeTitle() const { return font(26); }

QFont Theme::title() const { return font(22); }

QFont Theme::title2() const { return font(17); }

QFont Theme::title3() const { return font(15); }

QFont Theme::headline() const { return font(13, QFont::DemiBold); }

QFont Theme::body() const { return font(13); }

QFont Theme::callout() const { return font(12); }

QFont Theme::subheadline() const { return font(11); }

QFont Theme::caption() const { return font(10); }

QFont Theme::rowTitle() const { return font(13, QFont::Medium); }

QFont Theme::figure() const { return font(17, QFont::DemiBold); }

QFont Theme::bigFigure() const {
    QFont big = font(48, QFont::Bold);
    big.setLetterSpacing(QFont::AbsoluteSpacing, -1);
    return big;
}

QFont Theme::resultFigure() const { return font(34, QFont::Bold); }

QFont Theme::panelFigure() const { return font(24, QFont::Bold); }

QFont Theme::medium(const QFont& font) const { return inWeight(font, QFont::Medium); }

QFont Theme::semibold(const QFont& font) const { return inWeight(font, QFont::DemiBold); }

QFont Theme::bold(const QFont& font) const { return inWeight(font, QFont::Bold); }

} // namespace tidewright
