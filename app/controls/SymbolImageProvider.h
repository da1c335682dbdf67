// Gives symbols to QML as images:
//
//     Image {
//         source: "image://symbols/trash.fill/" + String(colour).slice(1)
//         sourceSize: Qt.size(16, 16)
//     }
//
// The colour is in hexadecimal digits, as QML writes colours: rrggbb or aarrggbb; without one the
// symbol is black. QML asks for sourceSize times the ratio of the screen. Registered with
// QQmlEngine::addImageProvider under SymbolImageProvider::name().
#pragma once

#include <QQuickImageProvider>

namespace tidewright {

class SymbolImageProvider : public QQuickImageProvider {
public:
    static QString name() { return QStringLiteral("symbols"); }

    SymbolImageProvider();

    /// For any thread. A crossed square stands for a symbol that does not exist.
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace tidewright
