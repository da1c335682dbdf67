// The heading of a table's column: pressed, it asks to sort, and its left border sizes the column, as
// the left and right keys do.
import QtQuick
import QtQuick.Templates as T
import Tidewright.Controls

T.AbstractButton {
    id: heading

    property bool sorted: false
    property bool descending: false
    property bool resizable: false
    property bool onTheRight: false // where the words stand
    property bool borderShown: false
    property int gap: 0 // to the column before, in whose middle the border is

    signal widthAsked(width: real)

    readonly property int step: 5 // of a key

    function resize(event, by: real) {
        event.accepted = resizable
        if (resizable)
            widthAsked(width + by)
    }

    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    Keys.onReturnPressed: event => { if (!event.isAutoRepeat) heading.clicked() }
    Keys.onEnterPressed: event => { if (!event.isAutoRepeat) heading.clicked() }
    Keys.onLeftPressed: event => resize(event, step)
    Keys.onRightPressed: event => resize(event, -step)

    Accessible.role: Accessible.Button
    Accessible.name: heading.text
    Accessible.description: {
        if (!heading.sorted)
            return ""
        return heading.descending ? qsTr("Sorted descending") : qsTr("Sorted ascending")
    }
    Accessible.onPressAction: heading.clicked()

    contentItem: Item {
        Row {
            x: heading.onTheRight ? parent.width - width : 0
            height: parent.height
            layoutDirection: heading.onTheRight ? Qt.RightToLeft : Qt.LeftToRight
            spacing: 3

            Words {
                anchors.verticalCenter: parent.verticalCenter
                text: heading.text
                font: Theme.medium(Theme.subheadline)
                color: heading.sorted || heading.hovered ? Theme.text : Theme.text2
                decorative: true
            }
            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                visible: heading.sorted
                name: "chevron.right"
                size: 11
                color: Theme.text
                rotation: heading.descending ? 90 : -90
            }
        }
    }
    background: Item {
        FocusRing {
            shown: heading.visualFocus
            anchors.leftMargin: -6
            anchors.rightMargin: -4
            anchors.topMargin: 3
            anchors.bottomMargin: 3
        }
    }

    Loader {
        x: Math.round((-heading.gap - width) / 2)
        width: 11
        height: heading.height
        active: heading.resizable
        sourceComponent: MouseArea {
            id: border

            property real held: 0 // the column's width and the pointer's place together

            cursorShape: Qt.SplitHCursor
            hoverEnabled: true
            preventStealing: true
            onPressed: event => held = heading.width + mapToItem(null, event.x, 0).x
            onPositionChanged: event => {
                if (pressed)
                    heading.widthAsked(held - mapToItem(null, event.x, 0).x)
            }

            Rectangle {
                anchors.centerIn: parent
                width: 1
                height: 14
                visible: heading.borderShown || border.pressed
                color: border.containsMouse || border.pressed ? Theme.text3 : Theme.hair
            }
        }
    }
}
