#include "app/controls/SymbolPicture.h"

#include "app/controls/SymbolTable.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace tidewright {
namespace {

const QColor orange(0xc2, 0x5f, 0x0a);

QImage picture(const Symbol& symbol, int side, QColor colour = orange) {
    const QString name = QString::fromStdString(std::string(symbol.name));
    return symbolPicture(name, {side, side}, colour).convertToFormat(QImage::Format_ARGB32);
}

/// How many pixels are as opaque as this.
int pixelsOfAlpha(const QImage& image, int least, int most = 255) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (const int alpha = qAlpha(image.pixel(x, y)); alpha >= least && alpha <= most)
                ++count;
    return count;
}

bool isNear(QRgb pixel, QColor colour) {
    constexpr int rounding = 2;
    return std::abs(qRed(pixel) - colour.red()) <= rounding &&
           std::abs(qGreen(pixel) - colour.green()) <= rounding &&
           std::abs(qBlue(pixel) - colour.blue()) <= rounding;
}

/// Among those that are opaque enough to have kept their colour.
int pixelsOfOtherColour(const QImage& image, QColor colour) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) >= 96 && !isNear(image.pixel(x, y), colour))
                ++count;
    return count;
}

TEST(SymbolPictureTest, EachIsDrawnInEachSize) {
    for (const Symbol& symbol : allSymbols())
        for (const int side : {16, 32, 48, 96}) {
            const QImage image = picture(symbol, side);
            ASSERT_EQ(image.size(), QSize(side, side)) << symbol.name;
            // The smallest is an angle of two short lines.
            EXPECT_GE(pixelsOfAlpha(image, 96), side * side / 40) << symbol.name << " " << side;
            EXPECT_GE(pixelsOfAlpha(image, 0, 0), side * side / 8) << symbol.name << " " << side;
        }
}

TEST(SymbolPictureTest, EachHasTheColourAndNoOther) {
    for (const Symbol& symbol : allSymbols())
        for (const QColor& colour : {orange, QColor(Qt::white), QColor(Qt::blue)})
            for (const int side : {16, 32, 48, 96})
                EXPECT_EQ(pixelsOfOtherColour(picture(symbol, side, colour), colour), 0)
                    << symbol.name << " " << side;
}

TEST(SymbolPictureTest, NoneIsCutOff) {
    for (const Symbol& symbol : allSymbols()) {
        const QImage image = picture(symbol, 48);
        const int all = pixelsOfAlpha(image, 1);
        EXPECT_EQ(pixelsOfAlpha(image.copy(1, 1, 46, 46), 1), all) << symbol.name;
    }
}

TEST(SymbolPictureTest, EachIsDrawnForItsPixelsAndNotEnlarged) {
    for (const Symbol& symbol : allSymbols()) {
        const QImage enlarged =
            picture(symbol, 16).scaled(32, 32, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        EXPECT_GT(pixelsOfAlpha(picture(symbol, 32), 230), pixelsOfAlpha(enlarged, 230))
            << symbol.name;
    }
}

TEST(SymbolPictureTest, IsFilledWhereTheTableSaysSo) {
    for (const Symbol& symbol : allSymbols()) {
        const int tinted = pixelsOfAlpha(picture(symbol, 96), 46, 66);
        if (symbol.filledShape)
            EXPECT_GE(tinted, 96 * 96 / 10) << symbol.name;
        else
            EXPECT_LE(tinted, 96 * 96 / 40) << symbol.name;
    }
}

TEST(SymbolPictureTest, ATranslucentColourIsEven) {
    QColor half = orange;
    half.setAlpha(128);
    for (const Symbol& symbol : allSymbols())
        EXPECT_EQ(pixelsOfAlpha(picture(symbol, 48, half), 129), 0) << symbol.name;
}

TEST(SymbolPictureTest, LiesInTheMiddleOfAnOblongAndKeepsItsShape) {
    const QString name = QStringLiteral("circle");
    const QImage square = symbolPicture(name, {24, 24}, orange);
    const QImage wide = symbolPicture(name, {48, 24}, orange);
    EXPECT_EQ(wide.copy(12, 0, 24, 24), square);
    EXPECT_EQ(pixelsOfAlpha(wide.copy(0, 0, 12, 24), 1), 0);
    const QImage tall = symbolPicture(name, {24, 48}, orange);
    EXPECT_EQ(tall.copy(0, 12, 24, 24), square);
}

TEST(SymbolPictureTest, LinesHaveTheirWidth) {
    // A bar that lies in a circle, seen in its middle.
    const QImage image = symbolPicture(QStringLiteral("minus.circle"), {240, 240}, orange);
    EXPECT_NEAR(pixelsOfAlpha(image.copy(120, 60, 1, 120), 128), 17.5, 1);
}

TEST(SymbolPictureTest, IsNullWhereThereIsNone) {
    EXPECT_TRUE(symbolPicture(QStringLiteral("nothing.of.that.name"), {16, 16}, orange).isNull());
    EXPECT_TRUE(symbolPicture({}, {16, 16}, orange).isNull());
}

} // namespace
} // namespace tidewright
