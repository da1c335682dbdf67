// Who holds an item at the moment.
import QtQuick
import Tidewright.Controls

Row {
    id: label

    required property string text
    property bool decorative: false

    spacing: 4

    Symbol {
        id: symbol

        anchors.verticalCenter: words.verticalCenter
        name: "bolt.fill"
        size: 11
        color: Theme.orange
    }
    Words {
        id: words

        width: Math.min(implicitWidth, label.width - symbol.width - label.spacing)
        text: label.text
        font: Theme.caption
        color: Theme.orange
        elide: Text.ElideRight
        decorative: label.decorative
    }
}
