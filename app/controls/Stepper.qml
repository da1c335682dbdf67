// A number that is set step by step. It asks for another one, and shows it when it has come. What it
// counts stands beside it in words, which are its text.
import QtQuick
import QtQuick.Templates as T
import Tidewright.Controls

T.SpinBox { // of which nothing is used but that readers take it for one
    id: stepper

    required property string text
    required property real number
    required property real lowest
    required property real highest
    property real step: 1
    property bool canDecrease: number > lowest
    property bool canIncrease: number < highest

    signal decreased()
    signal increased()
    signal asked(number: real) // for this number, by a reader

    function decrease() {
        if (enabled && canDecrease)
            decreased()
    }
    function increase() {
        if (enabled && canIncrease)
            increased()
    }

    // What a reader tells, and a number that it sets. A number beyond the limits is not cut here.
    readonly property real minimumValue: lowest
    readonly property real maximumValue: highest
    readonly property int told: Math.max(from, Math.min(number, to))
    from: -0x80000000
    to: 0x7fffffff
    stepSize: step
    value: told
    onValueChanged: {
        if (value === told)
            return
        const wanted = value
        value = Qt.binding(() => stepper.told)
        asked(wanted)
    }

    implicitWidth: Theme.stepperWidth
    implicitHeight: Theme.smallButtonHeight
    opacity: enabled ? 1 : Theme.disabledOpacity
    focusPolicy: Qt.StrongFocus
    Keys.onUpPressed: stepper.increase()
    Keys.onRightPressed: stepper.increase()
    Keys.onDownPressed: stepper.decrease()
    Keys.onLeftPressed: stepper.decrease()
    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_Plus || event.key === Qt.Key_Minus
        if (event.key === Qt.Key_Plus)
            increase()
        else if (event.key === Qt.Key_Minus)
            decrease()
    }

    Accessible.name: stepper.text
    Accessible.onIncreaseAction: stepper.increase()
    Accessible.onDecreaseAction: stepper.decrease()

    background: Item {
        ButtonGround { anchors.fill: parent }
        FocusRing { shown: stepper.visualFocus }
    }

    // Not as its content, to which the keyboard would go as well.
    Half {
        symbolName: "minus"
        enabled: stepper.canDecrease
        onStepped: stepper.decrease()
    }
    Separator {
        anchors.centerIn: parent
        width: 1
        height: Theme.smallSymbolSize
    }
    Half {
        anchors.right: parent.right
        symbolName: "plus"
        enabled: stepper.canIncrease
        onStepped: stepper.increase()
    }
    WheelHandler {
        property real turned: 0 // since the last step, in eighths of a degree

        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        target: null
        onWheel: event => {
            const notch = 120
            turned += event.angleDelta.y
            for (; turned >= notch; turned -= notch)
                stepper.increase()
            for (; turned <= -notch; turned += notch)
                stepper.decrease()
        }
        onActiveChanged: turned = 0
    }

    component Half: MouseArea {
        id: half

        required property string symbolName
        property bool isHeld: false // so long that it steps by itself

        signal stepped()

        width: Math.floor(parent.width / 2)
        height: parent.height
        hoverEnabled: true
        preventStealing: true
        onPressed: {
            stepper.forceActiveFocus(Qt.MouseFocusReason)
            stepped()
        }
        onPressedChanged: isHeld = false

        Rectangle {
            anchors.fill: parent
            anchors.margins: Theme.pickerMargin
            visible: half.enabled && half.containsMouse
            radius: Theme.buttonRadius - Theme.pickerMargin
            color: half.pressed ? Theme.pressed : Theme.hover
        }
        Symbol {
            anchors.centerIn: parent
            name: half.symbolName
            size: Theme.smallSymbolSize
            color: Theme.text
            opacity: half.enabled ? 1 : Theme.disabledOpacity
        }
        Timer {
            interval: half.isHeld ? Theme.repeatInterval : Theme.repeatDelay
            repeat: true
            running: half.pressed && half.containsMouse && half.enabled
            onTriggered: {
                half.isHeld = true
                half.stepped()
            }
        }
    }
}
