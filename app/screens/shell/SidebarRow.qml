// One place in the sidebar.
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Tidewright.Controls
import Tidewright.Screens

T.ItemDelegate {
    id: row

    required property int index
    required property string title
    required property string symbolName
    required property string badge
    required property string sizeText
    required property bool isCurrent
    required property bool isFocused

    text: title
    implicitHeight: Theme.sidebarRowHeight + 2
    leftPadding: Theme.sidebarRowPadding
    rightPadding: Theme.sidebarRowPadding
    focusPolicy: Qt.NoFocus
    hoverEnabled: true
    Accessible.role: Accessible.ListItem
    Accessible.name: [title, badge, sizeText].filter(part => part !== "").join(", ")
    Accessible.selected: isCurrent
    Accessible.selectable: true
    Accessible.onPressAction: clicked()

    background: Rectangle {
        anchors { fill: parent; topMargin: 1; bottomMargin: 1 }
        radius: Theme.sidebarRowRadius
        color: row.isCurrent ? Theme.sel : row.down ? Theme.pressed : row.hovered ? Theme.hover : "transparent"

        FocusRing {
            shown: row.isFocused
            cornerRadius: Theme.sidebarRowRadius
        }
    }
    contentItem: RowLayout {
        spacing: 9

        Symbol {
            name: row.symbolName
            color: Theme.accent
        }
        Words {
            Layout.fillWidth: true
            text: row.title
            elide: Text.ElideRight
            decorative: true
        }
        Loader {
            active: row.badge !== ""
            visible: active
            sourceComponent: CountBadge { text: row.badge }
        }
        Words {
            visible: row.sizeText !== ""
            text: row.sizeText
            font: Theme.subheadline
            color: Theme.text2
            decorative: true
        }
    }
}
