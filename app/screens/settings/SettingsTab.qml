// One of the tabs of the settings.
import QtQuick
import QtQuick.Templates as T
import Tidewright.Controls
import Tidewright.Screens

T.TabButton {
    id: tab

    required property string symbolName
    required property bool isCurrent
    required property bool isFocused

    implicitWidth: Math.max(84, Math.ceil(label.implicitWidth) + 2 * Theme.buttonPadding)
    implicitHeight: 52
    hoverEnabled: true
    focusPolicy: Qt.NoFocus

    Accessible.role: Accessible.PageTab
    Accessible.name: tab.text
    Accessible.selectable: true
    Accessible.selected: tab.isCurrent
    Accessible.onPressAction: tab.clicked()

    background: Rectangle {
        radius: Theme.largeButtonRadius
        color: tab.isCurrent ? Theme.sel : tab.down ? Theme.pressed : tab.hovered ? Theme.hover : "transparent"

        FocusRing {
            shown: tab.isFocused
            cornerRadius: Theme.largeButtonRadius
        }
    }
    contentItem: Item {
        Symbol {
            id: symbol

            anchors { top: parent.top; topMargin: 7; horizontalCenter: parent.horizontalCenter }
            name: tab.symbolName
            size: Theme.cardSymbolSize
            color: tab.isCurrent ? Theme.accent : Theme.text2
        }
        Words {
            id: label

            anchors { top: symbol.bottom; topMargin: 3; horizontalCenter: parent.horizontalCenter }
            text: tab.text
            font: Theme.medium(Theme.subheadline)
            color: tab.isCurrent ? Theme.accent : Theme.text2
            decorative: true
        }
    }
}
