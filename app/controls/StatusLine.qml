// A symbol and a few words in one colour.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls

RowLayout {
    id: line

    required property string symbolName
    required property string text
    required property font font
    property color color: Theme.text
    property color symbolColor: color
    property bool decorative: false

    spacing: 6

    Symbol {
        name: line.symbolName
        size: line.font.pixelSize + 3
        color: line.symbolColor
    }
    Words {
        Layout.fillWidth: true
        text: line.text
        font: line.font
        color: line.color
        elide: Text.ElideRight
        decorative: line.decorative
    }
}
