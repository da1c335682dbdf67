// One past cleanup.
import QtQuick
import Tidewright.Controls

Item {
    id: row

    required property int index
    required property string dateText
    required property string freedText
    required property string itemsText
    required property bool hasLog

    required property bool focused
    required property bool marked // its bar is pointed at
    required property bool showsRing

    signal pressed()
    signal menuAsked(x: real, y: real)
    signal logAsked()

    readonly property int margin: 10 // from the list's edge to the ground
    readonly property int padding: 14 // from there to what the row shows
    readonly property int radius: 10
    readonly property int lineSpacing: 3
    readonly property int gap: 10

    property bool pooled: false // it waits to show another cleanup, and shows none

    height: lines.height + 2 * Theme.tableRowPadding
    visible: !pooled
    ListView.onPooled: pooled = true
    ListView.onReused: {
        pooled = false
        opacity = 1 // which a row that has gone lost
    }

    Accessible.role: Accessible.ListItem
    Accessible.ignored: pooled
    Accessible.name: [dateText, freedText, itemsText].join(", ")
    Accessible.focusable: true
    Accessible.selectable: true
    Accessible.selected: focused
    Accessible.onPressAction: {
        if (!pooled)
            pressed()
    }

    Rectangle {
        id: ground

        x: row.margin
        width: row.width - 2 * x
        height: row.height
        radius: row.radius
        color: row.focused ? Theme.sel : hover.hovered || row.marked ? Theme.hover : "transparent"

        FocusRing {
            shown: row.showsRing
            cornerRadius: row.radius
            distance: -border.width // inside, as rows lie close together
        }
    }
    HoverHandler {
        id: hover
    }
    MouseArea {
        anchors.fill: ground
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        preventStealing: true // a mouse does not drag lists about
        onPressed: row.pressed()
        onClicked: event => {
            if (event.button === Qt.RightButton)
                row.menuAsked(ground.x + event.x, event.y)
        }
    }
    Column {
        id: lines

        x: row.margin + row.padding
        width: freed.x - row.gap - x
        anchors.verticalCenter: parent.verticalCenter
        spacing: row.lineSpacing

        Words {
            width: lines.width
            text: row.dateText
            font: Theme.rowTitle
            elide: Text.ElideRight
            decorative: true
        }
        Words {
            width: lines.width
            text: row.itemsText
            font: Theme.subheadline
            color: Theme.text2
            elide: Text.ElideRight
            decorative: true
        }
    }
    SizeText {
        id: freed

        x: log.x - row.gap - width
        anchors.verticalCenter: parent.verticalCenter
        font: Theme.semibold(Theme.body)
        size: row.freedText
        decorative: true
    }
    Item {
        id: log

        x: row.width - row.margin - row.padding + (width - Theme.rowSymbolSize) / 2 - width
        width: Theme.iconButtonWidth
        height: row.height

        Loader {
            anchors.verticalCenter: parent.verticalCenter
            active: row.hasLog
            sourceComponent: IconButton {
                flat: true
                symbolName: "doc.text.magnifyingglass"
                text: qsTr("Show audit log")
                focusPolicy: Qt.NoFocus // the row has it
                onClicked: {
                    if (!row.pooled)
                        row.logAsked()
                }
            }
        }
    }
}
