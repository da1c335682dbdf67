#include "app/controls/CardShadow.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>
#include <vector>

namespace tidewright {

namespace {

/// One pass over a line of bytes, each of which becomes the mean of those around it.
void blurLine(uchar* line, int count, qsizetype step, int reach, std::vector<int>& copy) {
    for (int index = 0; index < count; ++index)
        copy[static_cast<std::size_t>(index)] = line[index * step];
    const auto at = [&](int index) {
        return index < 0 || index >= count ? 0 : copy[static_cast<std::size_t>(index)];
    };
    int sum = 0;
    for (int index = -reach; index < reach; ++index)
        sum += at(index);
    const int width = 2 * reach + 1;
    for (int index = 0; index < count; ++index) {
        sum += at(index + reach);
        line[index * step] = static_cast<uchar>((sum + width / 2) / width);
        sum -= at(index - reach);
    }
}

/// Three means of this reach are close to a Gaussian of half the blur.
int reachOf(double blur) {
    const double deviation = blur / 2;
    return std::max(
        1, static_cast<int>(std::lround((std::sqrt(4 * deviation * deviation + 1) - 1) / 2)));
}

void blurImage(QImage& image, double blur) {
    const int reach = reachOf(blur);
    std::vector<int> copy(static_cast<std::size_t>(std::max(image.width(), image.height())));
    for (int pass = 0; pass < 3; ++pass) {
        for (int y = 0; y < image.height(); ++y)
            blurLine(image.scanLine(y), image.width(), 1, reach, copy);
        for (int x = 0; x < image.width(); ++x)
            blurLine(image.bits() + x, image.height(), image.bytesPerLine(), reach, copy);
    }
}

/// A corner's worth on each side and one pixel between: the rest is stretched from it.
struct ShadowPatch {
    QImage mask;
    int corner = 0; ///< pixels
    int margin = 0; ///< of which outside of the shape
};

const ShadowPatch& patchFor(int radius, int blur) {
    static std::map<std::pair<int, int>, ShadowPatch> patches;
    auto [found, isNew] = patches.try_emplace({radius, blur});
    ShadowPatch& patch = found->second;
    if (!isNew)
        return patch;
    patch.margin = 3 * reachOf(blur) + 1;
    patch.corner = 2 * patch.margin + radius;
    const int side = 2 * patch.corner + 1;
    patch.mask = QImage(side, side, QImage::Format_Alpha8);
    patch.mask.fill(0);
    QPainter painter(&patch.mask);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    const double inner = side - 2 * patch.margin;
    painter.drawRoundedRect(QRectF(patch.margin, patch.margin, inner, inner), radius, radius);
    painter.end();
    blurImage(patch.mask, blur);
    return patch;
}

QImage colored(const QImage& mask, const QColor& color) {
    QImage image(mask.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, mask);
    painter.end();
    return image;
}

} // namespace

void drawShadow(QPainter& painter,
                const QRectF& shape,
                double radius,
                double blur,
                double offset,
                const QColor& color) {
    const double scale = painter.deviceTransform().m11();
    const ShadowPatch& patch = patchFor(static_cast<int>(std::lround(radius * scale)),
                                        static_cast<int>(std::lround(blur * scale)));
    const QImage image = colored(patch.mask, color);

    const double margin = patch.margin / scale;
    const QRectF outer = shape.translated(0, offset).adjusted(-margin, -margin, margin, margin);
    // Of a small shape the middles of the corners are left out.
    const double cornerX = std::min(patch.corner / scale, outer.width() / 2);
    const double cornerY = std::min(patch.corner / scale, outer.height() / 2);
    const double targetX[] = {outer.left(), outer.left() + cornerX, outer.right() - cornerX,
                              outer.right()};
    const double targetY[] = {outer.top(), outer.top() + cornerY, outer.bottom() - cornerY,
                              outer.bottom()};
    const double side = image.width();
    const double sourceX[] = {0, cornerX * scale, side - cornerX * scale, side};
    const double sourceY[] = {0, cornerY * scale, side - cornerY * scale, side};
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column) {
            const QRectF target(QPointF(targetX[column], targetY[row]),
                                QPointF(targetX[column + 1], targetY[row + 1]));
            const QRectF source(QPointF(sourceX[column], sourceY[row]),
                                QPointF(sourceX[column + 1], sourceY[row + 1]));
            if (!target.isEmpty())
                painter.drawImage(target, image, source);
        }
}

} // namespace tidewright
