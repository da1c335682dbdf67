// A part of what is said of an item.
import QtQuick
import Tidewright.Controls

Column {
    id: part

    required property string title
    required property string symbolName
    required property string text
    required property list<string> lines

    signal reached(item: Item)

    readonly property int symbolSize: 14

    spacing: 4

    Row {
        spacing: 6

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: part.symbolName
            size: part.symbolSize
            color: Theme.accent
        }
        Words {
            anchors.verticalCenter: parent.verticalCenter
            text: part.title
            font: Theme.semibold(Theme.subheadline)
            Accessible.role: Accessible.Heading
        }
    }
    Loader {
        active: part.text !== ""
        visible: active
        sourceComponent: DetailText {
            width: part.width
            text: part.text
            onActiveFocusChanged: {
                if (activeFocus)
                    part.reached(this)
            }
        }
    }
    Repeater {
        model: part.lines
        delegate: DetailText {
            required property string modelData

            width: part.width
            text: modelData
            wrapMode: TextEdit.WrapAnywhere
            onActiveFocusChanged: {
                if (activeFocus)
                    part.reached(this)
            }
        }
    }
}
