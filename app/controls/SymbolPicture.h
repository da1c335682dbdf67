// Draws symbols. The pictures of SymbolTable.h are for systems that have none of their own; such a
// system gets another source for this header.
#pragma once

#include <QColor>
#include <QImage>
#include <QString>

namespace tidewright {

/// How thick the lines are.
enum class SymbolWeight { regular, bold };

/// The symbol in one colour on a clear ground, in the middle and as large as the size allows, drawn
/// for exactly these pixels. Null if there is no such symbol. For any thread.
QImage symbolPicture(const QString& name,
                     QSize pixels,
                     QColor colour,
                     SymbolWeight weight = SymbolWeight::regular);

} // namespace tidewright
