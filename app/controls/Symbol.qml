// A symbol by its name, for the eye alone: what it says stands beside it in words.
import QtQuick
import Tidewright.Controls

Image {
    required property string name
    property int size: Theme.rowSymbolSize
    property color color: Theme.text2

    width: size
    height: size
    sourceSize: Qt.size(size, size)
    source: name === "" ? "" : "image://symbols/" + name + "/" + String(color).slice(1)
}
