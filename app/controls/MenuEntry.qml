import QtQuick
import QtQuick.Templates as T
import Tidewright.Controls

T.MenuItem {
    id: entry

    property string symbolName: ""

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Theme.smallButtonHeight
    horizontalPadding: Theme.sidebarRowPadding
    opacity: enabled ? 1 : Theme.disabledOpacity
    font: Theme.body

    Accessible.role: Accessible.MenuItem
    Accessible.name: entry.text
    Accessible.onPressAction: {
        if (entry.enabled)
            entry.triggered()
    }

    contentItem: Item {
        implicitWidth: row.implicitWidth

        Row {
            id: row

            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.buttonSpacing

            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                visible: entry.symbolName !== ""
                name: entry.symbolName
                size: Theme.smallSymbolSize
                color: entry.highlighted ? Theme.onAccent : Theme.text2
            }
            Words {
                anchors.verticalCenter: parent.verticalCenter
                text: entry.text
                font: entry.font
                color: entry.highlighted ? Theme.onAccent : Theme.text
                decorative: true
            }
        }
    }
    background: Rectangle {
        radius: Theme.listRadius - Theme.menuPadding
        color: entry.highlighted ? Theme.accent : "transparent"
    }
}
