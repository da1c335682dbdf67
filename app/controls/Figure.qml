// A size and what it is of. The loud ones stand above their words.
import QtQuick
import Tidewright.Controls

Column {
    id: figure

    required property string label
    required property string size
    property color color: Theme.text
    property bool loud: false
    property bool labelBelow: loud

    spacing: Theme.titleSpacing

    Accessible.role: Accessible.StaticText
    Accessible.name: figure.label + " " + figure.size

    Words {
        visible: !figure.labelBelow
        text: figure.label
        font: Theme.caption
        color: Theme.text2
        decorative: true
    }
    SizeText {
        size: figure.size
        font: figure.loud || figure.labelBelow ? Theme.bold(Theme.title) : Theme.figure
        color: figure.color
        decorative: true
    }
    Words {
        visible: figure.labelBelow
        text: figure.label
        font: Theme.caption
        color: Theme.text2
        decorative: true
    }
}
