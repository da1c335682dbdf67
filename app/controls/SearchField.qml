import QtQuick
import QtQuick.Templates as T
import Tidewright.Controls

T.TextField {
    id: field

    required property string placeholder

    implicitWidth: Theme.searchFieldWidth
    implicitHeight: Theme.toolbarButtonHeight
    leftPadding: Theme.buttonPadding + Theme.rowSymbolSize + Theme.buttonSpacing
    rightPadding: Theme.toolbarButtonHeight
    verticalAlignment: Text.AlignVCenter
    font: Theme.body
    color: Theme.text
    selectionColor: Theme.accent
    selectedTextColor: Theme.onAccent
    selectByMouse: true
    opacity: enabled ? 1 : Theme.disabledOpacity

    function empty() {
        clear()
        textEdited()
    }

    Keys.onEscapePressed: event => {
        event.accepted = field.text !== ""
        if (event.accepted)
            field.empty()
    }

    Accessible.role: Accessible.EditableText
    Accessible.name: field.placeholder
    Accessible.searchEdit: true

    background: Item {
        Rectangle {
            anchors.fill: parent
            radius: Theme.buttonRadius
            color: field.hovered || field.activeFocus ? Theme.surfaceTop : Theme.surface
            border.width: 1
            border.color: Theme.hair
        }
        FocusRing { shown: field.activeFocus }
        Symbol {
            x: Theme.buttonPadding
            anchors.verticalCenter: parent.verticalCenter
            name: "magnifyingglass"
        }
    }

    Words {
        x: field.leftPadding
        width: field.width - field.leftPadding - Theme.buttonSpacing // nothing is there to clear
        anchors.verticalCenter: parent.verticalCenter
        // Beside a magnifying glass a word cut short says less than none.
        visible: field.text === "" && field.preeditText === "" && implicitWidth <= width
        text: field.placeholder
        font: field.font
        color: Theme.text2
        decorative: true
    }

    Loader {
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        active: field.text !== ""
        sourceComponent: T.AbstractButton {
            id: clearer

            text: qsTr("Clear")
            implicitWidth: Theme.toolbarButtonHeight
            implicitHeight: Theme.toolbarButtonHeight
            focusPolicy: Qt.NoFocus
            onClicked: {
                field.empty()
                field.forceActiveFocus(Qt.MouseFocusReason)
            }
            Accessible.role: Accessible.Button
            Accessible.name: clearer.text
            Accessible.onPressAction: clearer.clicked()
            contentItem: Item {
                Symbol {
                    anchors.centerIn: parent
                    name: "xmark.circle.fill"
                    size: Theme.smallSymbolSize
                    color: clearer.hovered ? Theme.text : Theme.text2
                }
            }
        }
    }
}
