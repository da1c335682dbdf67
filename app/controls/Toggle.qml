// A switch, which asks as a TickBox does. Its text is for readers alone.
import QtQuick
import QtQuick.Templates as T
import Tidewright.Controls

T.CheckBox {
    id: toggle

    signal asked(on: bool)

    function ask() {
        if (enabled)
            asked(!checked)
    }

    implicitWidth: Theme.toggleWidth
    implicitHeight: Theme.toggleHeight
    padding: 0
    opacity: enabled ? 1 : Theme.disabledOpacity
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    nextCheckState: function() { return toggle.checkState }
    onClicked: toggle.ask()

    Accessible.role: Accessible.CheckBox
    Accessible.name: toggle.text
    Accessible.checkable: true
    Accessible.checked: toggle.checked
    Accessible.onPressAction: toggle.ask()
    Accessible.onToggleAction: toggle.ask()

    indicator: Rectangle {
        readonly property color fill: {
            if (!toggle.checked)
                return Theme.track
            return toggle.down ? Theme.accentPressed : toggle.hovered ? Theme.accentHover : Theme.accent
        }

        x: Math.round((toggle.width - width) / 2)
        y: Math.round((toggle.height - height) / 2)
        width: Theme.toggleWidth
        height: Theme.toggleHeight
        radius: height / 2
        color: fill

        Rectangle {
            x: toggle.checked ? parent.width - width - y : y
            y: Theme.toggleMargin
            width: height
            height: parent.height - 2 * y
            radius: height / 2
            color: toggle.checked ? Theme.onAccent : Theme.text3

            Behavior on x { SnappyMotion {} }
        }
        FocusRing {
            shown: toggle.visualFocus
            cornerRadius: parent.radius
        }
    }
}
