// A box to tick, whose state is that of what it is bound to: it asks for the other one, and shows it
// when it has come. Its text is for readers alone.
import QtQuick
import QtQuick.Templates as T
import Tidewright.Controls

T.CheckBox {
    id: box

    signal asked(on: bool)

    function ask() {
        if (enabled)
            asked(!checked)
    }

    implicitWidth: Theme.tickBoxArea
    implicitHeight: Theme.tickBoxArea
    padding: 0
    opacity: enabled ? 1 : Theme.disabledOpacity
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    nextCheckState: function() { return box.checkState }
    onClicked: box.ask()

    Accessible.role: Accessible.CheckBox
    Accessible.name: box.text
    Accessible.checkable: true
    Accessible.checked: box.checked
    Accessible.onPressAction: box.ask()
    Accessible.onToggleAction: box.ask()

    indicator: Rectangle {
        readonly property color fill: {
            if (!box.checked)
                return box.hovered ? Theme.surfaceTop : Theme.surface
            return box.down ? Theme.accentPressed : box.hovered ? Theme.accentHover : Theme.accent
        }

        x: Math.round((box.width - width) / 2)
        y: Math.round((box.height - height) / 2)
        width: Theme.tickBoxSize
        height: Theme.tickBoxSize
        radius: Theme.tickBoxRadius
        color: fill
        border.width: box.checked ? 0 : 1
        border.color: Theme.text3

        Rectangle {
            anchors.fill: parent
            visible: box.down && !box.checked
            radius: parent.radius
            color: Theme.pressed
        }
        TickMark {
            anchors.fill: parent
            visible: box.checked
            color: Theme.onAccent
        }
        FocusRing {
            shown: box.visualFocus
            cornerRadius: Theme.tickBoxRadius
        }
    }
}
