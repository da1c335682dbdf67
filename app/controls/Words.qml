// A text of the screens. Those that repeat what a reader hears elsewhere are decorative.
import QtQuick
import Tidewright.Controls

Text {
    id: words

    property bool decorative: false

    textFormat: Text.PlainText
    font: Theme.body
    color: Theme.text
    Accessible.role: Accessible.StaticText
    Accessible.name: words.text
    Accessible.ignored: words.decorative
}
