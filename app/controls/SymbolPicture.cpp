#include "app/controls/SymbolPicture.h"

#include "app/controls/SymbolTable.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace tidewright {

namespace {

// In a picture of 24 by 24; the files have 2.
constexpr const char* regularLine = R"(stroke-width="1.75")";
constexpr const char* boldLine = R"(stroke-width="2.75")";
constexpr const char* filling = R"( fill="currentColor" fill-opacity="0.22")";

/// Fills one shape of a file. Each stands on a line of its own.
void fill(QByteArray& svg, int shape) {
    qsizetype start = svg.indexOf("\n  <");
    for (; start >= 0 && shape > 0; --shape)
        start = svg.indexOf("\n  <", start + 1);
    if (start >= 0)
        svg.insert(svg.indexOf(' ', start + 4), filling);
}

QByteArray svgOf(const Symbol& symbol, SymbolWeight weight) {
    const auto name = QLatin1String(symbol.file.data(), static_cast<qsizetype>(symbol.file.size()));
    QFile file(QStringLiteral(":/symbols/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QByteArray svg = file.readAll();
    svg.replace(R"(stroke-width="2")", weight == SymbolWeight::bold ? boldLine : regularLine);
    if (symbol.filledShape)
        fill(svg, *symbol.filledShape);
    return svg;
}

} // namespace

QImage symbolPicture(const QString& name, QSize pixels, QColor colour, SymbolWeight weight) {
    const Symbol* symbol = findSymbol(name.toStdString());
    if (symbol == nullptr)
        return {};
    QSvgRenderer renderer(svgOf(*symbol, weight));
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    QImage picture(pixels, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    renderer.render(&painter);
    // Lines that cross would show through each other if they were drawn in a translucent colour.
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(picture.rect(), colour);
    painter.end();
    return picture;
}

} // namespace tidewright
