// A button that shows a symbol alone; its text is what a reader hears and, without help, its tip. A
// flat one has a ground only under the pointer.
import QtQuick
import QtQuick.Templates as T
import Tidewright.Controls

T.Button {
    id: button

    required property string symbolName
    property string help: ""

    function press() {
        if (!enabled)
            return
        if (checkable) {
            toggle()
            toggled()
        }
        clicked()
    }
    function pressByKey(event) {
        if (!event.isAutoRepeat)
            press()
    }

    implicitWidth: Theme.iconButtonWidth
    implicitHeight: Theme.toolbarButtonHeight
    opacity: enabled ? 1 : Theme.disabledOpacity
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Keys.onReturnPressed: event => button.pressByKey(event)
    Keys.onEnterPressed: event => button.pressByKey(event)

    Accessible.role: Accessible.Button
    Accessible.name: button.text
    Accessible.description: button.help
    Accessible.checkable: button.checkable
    Accessible.checked: button.checked
    Accessible.onPressAction: button.press()
    Accessible.onToggleAction: button.press()

    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: button.symbolName
            color: button.checked ? Theme.accent : button.flat && !button.hovered ? Theme.text2 : Theme.text
        }
    }
    background: Item {
        ButtonGround {
            anchors.fill: parent
            visible: !button.flat || button.hovered || button.down
            hovered: button.hovered
            pressed: button.down
        }
        FocusRing { shown: button.visualFocus }
    }

    Loader {
        active: button.hovered
        sourceComponent: HelpTip {
            parent: button
            text: button.help === "" ? button.text : button.help
            wanted: button.hovered && !button.down
        }
    }
}
