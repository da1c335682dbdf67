// An application or a file, with when it was last used or changed and its size.
import QtQuick
import Tidewright.Controls

Item {
    id: row

    required property int index
    required property string name
    required property string path
    required property string folder
    required property string dateText
    required property string sizeText

    required property FoundColumns columns
    required property bool focused
    required property bool showsRing

    signal pressed()
    signal menuAsked(x: real, y: real)
    signal revealed()

    readonly property int radius: 10
    readonly property int lineSpacing: 3

    property bool pooled: false // it waits to show another, and shows none

    height: lines.height + 2 * Theme.tableRowPadding
    visible: !pooled
    ListView.onPooled: pooled = true
    ListView.onReused: {
        pooled = false
        opacity = 1 // which a row that has gone lost
    }

    Accessible.role: Accessible.ListItem
    Accessible.ignored: pooled
    Accessible.name: [name, dateText, sizeText].filter(part => part !== "").join(", ")
    Accessible.description: path
    Accessible.focusable: true
    Accessible.selectable: true
    Accessible.selected: focused
    Accessible.onPressAction: {
        if (pooled)
            return
        pressed()
        revealed()
    }

    Rectangle {
        id: ground

        x: row.columns.margin
        width: row.width - 2 * x
        height: row.height
        radius: row.radius
        color: row.focused ? Theme.sel : hover.hovered ? Theme.hover : "transparent"

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
        onDoubleClicked: event => {
            if (event.button === Qt.LeftButton)
                row.revealed()
        }
    }
    Column {
        id: lines

        x: row.columns.nameX
        width: row.columns.name
        anchors.verticalCenter: parent.verticalCenter
        spacing: row.lineSpacing

        Words {
            width: lines.width
            text: row.name
            font: Theme.rowTitle
            elide: Text.ElideRight
            decorative: true
        }
        Words {
            width: lines.width
            text: row.folder
            font: Theme.subheadline
            color: Theme.text2
            elide: Text.ElideMiddle
            decorative: true
        }
    }
    Words {
        x: row.columns.dateX
        width: row.columns.date
        anchors.verticalCenter: parent.verticalCenter
        text: row.dateText
        color: Theme.text2
        elide: Text.ElideRight
        decorative: true
    }
    SizeText {
        x: row.columns.sizeX
        width: row.columns.size
        anchors.verticalCenter: parent.verticalCenter
        horizontalAlignment: Text.AlignRight
        size: row.sizeText
        decorative: true
    }
}
