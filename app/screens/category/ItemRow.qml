// A row of the item table.
import QtQuick
import Tidewright.Controls

Item {
    id: row

    required property int index
    required property string title
    required property string version
    required property string sizeText
    required property string decision
    required property string decisionTitle
    required property string decisionSymbol
    required property string reason
    required property string inUse
    required property bool selected
    required property bool selectable

    required property ItemColumns columns
    required property bool focused // details are shown of it
    required property bool showsRing

    signal pressed()
    signal menuAsked(x: real, y: real)
    signal tickAsked(on: bool)

    readonly property int radius: 10
    readonly property int lineSpacing: 3
    readonly property int wordSpacing: 4
    readonly property int titleMinimum: 48

    property bool pooled: false // it waits to show another item, and shows none

    height: lines.height + 2 * Theme.tableRowPadding
    visible: !pooled
    ListView.onPooled: pooled = true
    ListView.onReused: {
        pooled = false
        opacity = 1 // which a row that has gone lost
    }

    Accessible.role: Accessible.ListItem
    Accessible.ignored: pooled
    Accessible.name: {
        const name = version === "" ? title : title + " " + version
        return [[name, sizeText, decisionTitle].join(", ") + ".", reason, inUse].join(" ").trim()
    }
    Accessible.focusable: true
    Accessible.selectable: true
    Accessible.selected: focused
    Accessible.onPressAction: {
        if (!pooled)
            pressed()
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
    }
    TickBox {
        x: row.columns.tickX
        anchors.verticalCenter: parent.verticalCenter
        text: qsTr("Clean %1").arg(row.title)
        checked: row.selected
        enabled: row.selectable
        focusPolicy: Qt.NoFocus // the row has it
        onAsked: on => {
            if (!row.pooled)
                row.tickAsked(on)
        }
    }
    Column {
        id: lines

        x: row.columns.itemX
        width: row.columns.item
        anchors.verticalCenter: parent.verticalCenter
        spacing: row.lineSpacing

        Row {
            spacing: row.wordSpacing

            Words {
                id: titleWords

                readonly property real taken: versionWords.text === "" ? 0 : versionWords.width + row.wordSpacing

                width: Math.min(implicitWidth, lines.width - taken)
                text: row.title
                font: Theme.rowTitle
                elide: Text.ElideRight
                decorative: true
            }
            Words {
                id: versionWords

                readonly property real taken: row.wordSpacing
                                              + Math.min(titleWords.implicitWidth, row.titleMinimum)

                width: Math.min(implicitWidth, lines.width - taken)
                text: row.version
                color: Theme.text2
                elide: Text.ElideRight
                decorative: true
            }
        }
        Words {
            width: lines.width
            text: row.reason
            font: Theme.subheadline
            color: Theme.text2
            elide: Text.ElideRight
            decorative: true
        }
        Loader {
            active: row.inUse !== ""
            visible: active
            sourceComponent: InUseLabel {
                width: lines.width
                text: row.inUse
                decorative: true
            }
        }
    }
    SizeText {
        x: row.columns.sizeX
        width: row.columns.size
        anchors.verticalCenter: parent.verticalCenter
        horizontalAlignment: Text.AlignRight
        size: row.sizeText
        decorative: true
    }
    DecisionBadge {
        x: row.columns.statusX
        anchors.verticalCenter: parent.verticalCenter
        decision: row.decision
        text: row.decisionTitle
        symbolName: row.decisionSymbol
        decorative: true
    }
}
