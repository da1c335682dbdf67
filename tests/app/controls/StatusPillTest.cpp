#include "app/controls/StatusPill.h"

#include "app/controls/SymbolPicture.h"
#include "app/controls/ThemeColors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <vector>

namespace tidewright {
namespace {

const char* const healths[] = {"good", "low", "critical"};
const char* const texts[] = {"9.9 GB", "10.0 GB", "128 GB", "1234 GB"};

QString string(const char* text) { return QString::fromLatin1(text); }

QImage wide(const char* health, const char* text, double ratio = 1) {
    return StatusPill::image(string(health), string(text), ratio);
}

QImage square(const char* health, const char* text, int size = 22, double ratio = 1) {
    return StatusPill::squareImage(string(health), string(text), size, ratio);
}

bool isWhite(const QColor& color) {
    return color.red() > 235 && color.green() > 235 && color.blue() > 235;
}

/// How many pixels of this part of the picture are white.
int whiteIn(const QImage& image, const QRect& part) {
    int count = 0;
    for (int y = part.top(); y <= part.bottom(); ++y)
        for (int x = part.left(); x <= part.right(); ++x)
            count += isWhite(image.pixelColor(x, y)) ? 1 : 0;
    return count;
}

/// By WCAG 2, to white.
double contrastOf(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    const double luminance = 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
                             0.0722 * linear(color.blueF());
    return 1.05 / (luminance + 0.05);
}

// --- In a bar

TEST(StatusPillTest, IsAsHighAsABarWants) {
    for (const char* const health : healths) {
        EXPECT_EQ(wide(health, "").size(), QSize(21, 15)) << health;
        for (const char* const text : texts)
            EXPECT_EQ(wide(health, text).height(), 15) << health << text;
    }
    EXPECT_GT(wide("good", "128 GB").width(), wide("good", "9.9 GB").width() - 5);
    EXPECT_GT(wide("good", "1234 GB").width(), wide("good", "128 GB").width());
}

TEST(StatusPillTest, HasAsManyPixelsAsTheScreen) {
    const int width = wide("good", "128 GB").width();
    for (const double ratio : {1.0, 1.25, 1.5, 2.0, 3.0}) {
        const QImage image = wide("good", "128 GB", ratio);
        EXPECT_EQ(image.devicePixelRatio(), ratio);
        EXPECT_EQ(image.size(), (QSizeF(width, 15) * ratio).toSize()) << ratio;
    }
}

TEST(StatusPillTest, FadesInTheColoursOfTheLiquidMixedWithWhite) {
    for (const char* const health : healths) {
        const LiquidColors liquid = liquidColors(string(health));
        const QImage image = wide(health, "", 2);
        const std::pair<int, QColor> ends[] = {{5, liquid.top}, {24, liquid.bottom}};
        for (const auto& [y, pure] : ends) {
            const QColor drawn = image.pixelColor(6, y); // beside the symbol and its shade
            EXPECT_EQ(drawn.alpha(), 255) << health << y;
            EXPECT_NEAR(drawn.red(), pure.red(), 36) << health << y;
            EXPECT_NEAR(drawn.green(), pure.green(), 36) << health << y;
            EXPECT_NEAR(drawn.blue(), pure.blue(), 36) << health << y;
            EXPECT_LT(contrastOf(drawn), contrastOf(pure) + 0.4) << "not darker";
        }
        EXPECT_NE(image.pixelColor(4, 3), image.pixelColor(4, 26)) << health;
    }
}

TEST(StatusPillTest, HasRoundCornersAndALightEdge) {
    for (const QImage& image : {wide("low", "128 GB", 2), square("low", "128 GB", 22, 2)}) {
        const int right = image.width() - 1;
        const int bottom = image.height() - 1;
        for (const QPoint corner :
             {QPoint(0, 0), QPoint(right, 0), QPoint(0, bottom), QPoint(right, bottom)})
            EXPECT_EQ(image.pixelColor(corner).alpha(), 0);
        const QColor edge = image.pixelColor(0, bottom / 2);
        const QColor inside = image.pixelColor(3, bottom / 2);
        EXPECT_EQ(edge.alpha(), 255);
        EXPECT_GT(edge.blue(), inside.blue() + 30);
    }
}

TEST(StatusPillTest, TheSymbolSaysTheHealth) {
    for (const auto& make :
         {std::function([](const char* health) { return wide(health, "", 4); }),
          std::function([](const char* health) { return square(health, "", 60); })}) {
        const QImage good = make("good");
        const QPoint middle = good.rect().center();
        // A disk is wider than high; the mark is a line that ends in a point.
        const auto extent = [](const QImage& image) {
            QRect ink;
            for (int y = 5; y < image.height() - 5; ++y)
                for (int x = 5; x < image.width() - 5; ++x)
                    if (isWhite(image.pixelColor(x, y)))
                        ink |= QRect(x, y, 1, 1);
            return ink;
        };
        EXPECT_GT(extent(good).width(), extent(good).height());
        EXPECT_NEAR(extent(good).center().x(), middle.x(), 2);
        for (const char* const health : {"low", "critical"}) {
            const QRect mark = extent(make(health));
            EXPECT_GT(mark.height(), 2 * mark.width()) << health;
            EXPECT_NEAR(mark.center().x(), middle.x(), 2) << health;
            EXPECT_NEAR(mark.center().y(), middle.y(), 3) << health;
        }
    }
}

TEST(StatusPillTest, TheTextStandsBesideTheSymbol) {
    for (const char* const health : healths) {
        const QImage image = wide(health, "128 GB", 2);
        const QRect left(10, 4, 18, 22);
        const QRect right(30, 4, image.width() - 40, 22);
        EXPECT_GT(whiteIn(image, left), 8) << health;
        EXPECT_GT(whiteIn(image, right), 100) << health;
        EXPECT_EQ(whiteIn(image, QRect(4, 4, 5, 22)), 0) << "the padding";
        EXPECT_EQ(whiteIn(image, QRect(image.width() - 8, 4, 5, 22)), 0) << "the padding";
    }
}

// --- In a tray

TEST(StatusPillTest, ASquareIsOfTheSizeThatWasAskedFor) {
    for (const int size : {16, 22, 24, 32, 48, 64})
        for (const double ratio : {1.0, 1.5, 2.0})
            for (const char* const text : {"", "128 GB"}) {
                const QImage image = square("good", text, size, ratio);
                const int side = static_cast<int>(std::lround(size * ratio));
                EXPECT_EQ(image.size(), QSize(side, side));
                EXPECT_EQ(image.devicePixelRatio(), ratio);
            }
}

TEST(StatusPillTest, ASquareKeepsItsTextWithinItself) {
    for (const int size : {16, 22, 24, 32, 64})
        for (const char* const health : healths)
            for (const char* const text : texts) {
                const QImage image = square(health, text, size, 2);
                const int side = image.width();
                EXPECT_EQ(whiteIn(image, QRect(0, 0, 2, side)), 0) << text << size;
                EXPECT_EQ(whiteIn(image, QRect(side - 2, 0, 2, side)), 0) << text << size;
                EXPECT_EQ(whiteIn(image, QRect(0, side - 2, side, 2)), 0) << text << size;
            }
}

TEST(StatusPillTest, TheNumberIsTheLargestThingInASquare) {
    for (const char* const text : texts) {
        const QImage image = square("critical", text, 22, 2);
        const QRect above(0, 0, 44, 20);
        const QRect below(0, 20, 44, 24);
        EXPECT_GT(whiteIn(image, below), whiteIn(image, above)) << text;
        EXPECT_GT(whiteIn(image, above), 20) << text << " has a symbol and a unit";
    }
}

// --- In either

/// The strongest contrast to the white of each white pixel within two pixels of a screen at 100 %;
/// of all these the one that nine in ten reach.
double contrastAroundWhite(const QImage& image) {
    const int reach = static_cast<int>(2 * image.devicePixelRatio());
    const QRect inside = image.rect().adjusted(reach, reach, -reach, -reach);
    std::vector<double> contrasts;
    for (int y = inside.top(); y <= inside.bottom(); ++y)
        for (int x = inside.left(); x <= inside.right(); ++x) {
            if (!isWhite(image.pixelColor(x, y)))
                continue;
            double strongest = 1;
            for (int dy = -reach; dy <= reach; ++dy)
                for (int dx = -reach; dx <= reach; ++dx)
                    strongest = std::max(strongest, contrastOf(image.pixelColor(x + dx, y + dy)));
            contrasts.push_back(strongest);
        }
    std::ranges::sort(contrasts);
    return contrasts.empty() ? 1 : contrasts[contrasts.size() / 10];
}

TEST(StatusPillTest, WhatItSaysCanBeRead) {
    for (const char* const health : healths)
        for (const double ratio : {1.0, 2.0}) {
            for (const char* const text : texts) {
                EXPECT_GE(contrastAroundWhite(wide(health, text, ratio)), 4.5) << health << text;
                EXPECT_GE(contrastAroundWhite(square(health, text, 22, ratio)), 4.5)
                    << health << text;
            }
            EXPECT_GE(contrastAroundWhite(wide(health, "", ratio)), 3) << health;
            EXPECT_GE(contrastAroundWhite(square(health, "", 22, ratio)), 3) << health;
        }
}

TEST(StatusPillTest, WhatCanNotBeDrawnIsASymbol) {
    const double beyond = std::numeric_limits<double>::infinity();
    const double none = std::numeric_limits<double>::quiet_NaN();
    const QImage symbol = symbolPicture(QStringLiteral("internaldrive"), {15, 15},
                                        liquidColors(string("low")).bottom);
    ASSERT_FALSE(symbol.isNull());
    for (const double ratio : {0.0, -1.0, 1e6, beyond, none})
        EXPECT_EQ(wide("low", "1 GB", ratio), symbol) << ratio;
    EXPECT_EQ(square("low", "", 0), symbol);
    EXPECT_EQ(square("low", "", 100'000), symbol);
}

TEST(StatusPillTest, AnIconHasEverySizeOfATray) {
    EXPECT_EQ(StatusPill::usualShape(), StatusPill::Shape::square);
    const QIcon icon = StatusPill::icon(QStringLiteral("low"), QStringLiteral("128 GB"));
    EXPECT_FALSE(icon.isMask());
    for (const int size : {16, 22, 24, 32, 48, 64}) {
        EXPECT_TRUE(icon.availableSizes().contains(QSize(size, size))) << size;
        EXPECT_TRUE(icon.availableSizes().contains(QSize(size, size) * 2)) << size;
        const QImage picture = icon.pixmap(QSize(size, size), 1.0).toImage();
        EXPECT_EQ(picture.convertToFormat(QImage::Format_ARGB32_Premultiplied),
                  square("low", "128 GB", size));
    }
}

TEST(StatusPillTest, AnIconOfABarIsSharpOnEitherScreen) {
    const QIcon icon =
        StatusPill::icon(QStringLiteral("good"), QStringLiteral("128 GB"), StatusPill::Shape::wide);
    EXPECT_FALSE(icon.isMask());
    const QSize size = wide("good", "128 GB").size();
    EXPECT_TRUE(icon.availableSizes().contains(size));
    EXPECT_TRUE(icon.availableSizes().contains(size * 2));
}

} // namespace
} // namespace tidewright
