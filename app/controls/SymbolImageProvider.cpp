#include "app/controls/SymbolImageProvider.h"

#include "app/controls/SymbolPicture.h"

#include <QPainter>
#include <QUrl>

#include <algorithm>

namespace tidewright {

namespace {

constexpr int usualSide = 24;
constexpr int largestSide = 2048;

struct Request {
    QString name;
    QColor colour = Qt::black;
};

Request requestOf(const QString& id) {
    const QString plain = QUrl::fromPercentEncoding(id.toUtf8());
    const qsizetype slash = plain.indexOf(QLatin1Char('/'));
    if (slash < 0)
        return {plain};
    Request request{plain.left(slash)};
    QString digits = plain.mid(slash + 1);
    if (digits.startsWith(QLatin1Char('#')))
        digits.remove(0, 1);
    const QColor colour = QColor::fromString(QString(QLatin1Char('#') + digits));
    if (colour.isValid())
        request.colour = colour;
    else
        qWarning("\"%s\" gives a symbol no colour.", qUtf8Printable(id));
    return request;
}

/// One side that is missing is like the other.
QSize pixelsOf(QSize requested) {
    const int width = requested.width() > 0 ? requested.width() : requested.height();
    const int height = requested.height() > 0 ? requested.height() : width;
    if (width <= 0)
        return {usualSide, usualSide};
    return {std::min(width, largestSide), std::min(height, largestSide)};
}

QImage crossedSquare(QSize pixels) {
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::magenta);
    QPainter painter(&image);
    painter.drawLine(image.rect().topLeft(), image.rect().bottomRight());
    painter.drawLine(image.rect().bottomLeft(), image.rect().topRight());
    painter.end();
    return image;
}

} // namespace

SymbolImageProvider::SymbolImageProvider() : QQuickImageProvider(Image) {}

QImage SymbolImageProvider::requestImage(const QString& id,
                                         QSize* size,
                                         const QSize& requestedSize) {
    const QSize pixels = pixelsOf(requestedSize);
    if (size != nullptr)
        *size = pixels;
    const Request request = requestOf(id);
    QImage picture = symbolPicture(request.name, pixels, request.colour);
    if (!picture.isNull())
        return picture;
    qWarning("There is no symbol \"%s\".", qUtf8Printable(request.name));
    return crossedSquare(pixels);
}

} // namespace tidewright
