// A row of a form: words on the left, and on the right what they are about.
import QtQuick
import Tidewright.Controls

Item {
    id: row

    property string text: ""
    property string symbolName: ""
    property string help: ""
    property bool isFirst: false
    property bool decorative: false // the control says the words itself
    property color color: Theme.text
    property int elide: Text.ElideRight
    default property alias control: place.data

    width: parent ? parent.width : implicitWidth
    implicitHeight: Theme.formRowHeight

    Separator {
        x: Theme.formPadding
        width: parent.width - 2 * x
        visible: !row.isFirst
    }
    Symbol {
        id: symbol

        x: Theme.formPadding
        anchors.verticalCenter: parent.verticalCenter
        visible: row.symbolName !== ""
        name: row.symbolName
    }
    Words {
        x: symbol.visible ? symbol.x + symbol.width + Theme.buttonSpacing : Theme.formPadding
        width: place.x - x - Theme.buttonSpacing
        anchors.verticalCenter: parent.verticalCenter
        text: row.text
        color: row.color
        elide: row.elide
        decorative: row.decorative
        Accessible.name: row.decorative ? "" : row.text
        Accessible.description: row.help
    }
    Row {
        id: place

        anchors { right: parent.right; rightMargin: Theme.formPadding; verticalCenter: parent.verticalCenter }
        spacing: Theme.buttonSpacing
    }
    HoverHandler { id: hover }
    Loader {
        active: row.help !== "" && hover.hovered
        sourceComponent: HelpTip {
            parent: row
            text: row.help
            wanted: hover.hovered
        }
    }
}
