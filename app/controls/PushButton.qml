import QtQuick
import QtQuick.Templates as T
import Tidewright.Controls

T.Button {
    id: button

    property string symbolName: ""
    property string kind: "plain" // or prominent, destructive, link
    property string extent: "toolbar" // or small, large
    property string help: ""
    property bool isDefault: false // what Return does where it stands

    /// One that can't be pressed does not call for it.
    readonly property string look: kind === "prominent" && !enabled ? "plain" : kind
    readonly property real radius: extent === "large" ? Theme.largeButtonRadius : Theme.buttonRadius
    readonly property color ink: {
        if (look === "prominent")
            return Theme.onAccent
        if (kind === "destructive")
            return Theme.red
        return kind === "link" ? Theme.accent : Theme.text
    }

    function press(event) {
        if (!event.isAutoRepeat)
            clicked()
    }

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: {
        if (extent === "small")
            return Theme.smallButtonHeight
        return extent === "large" ? Theme.largeButtonHeight : Theme.toolbarButtonHeight
    }
    horizontalPadding: {
        if (kind === "link")
            return 0
        if (extent === "small")
            return Theme.smallButtonPadding
        return extent === "large" ? Theme.largeButtonPadding : Theme.buttonPadding
    }
    font: extent === "small" ? Theme.medium(Theme.callout) : Theme.rowTitle
    opacity: enabled ? 1 : Theme.disabledOpacity
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Keys.onReturnPressed: event => button.press(event)
    Keys.onEnterPressed: event => button.press(event)

    Accessible.role: Accessible.Button
    Accessible.name: button.text
    Accessible.description: button.help
    Accessible.defaultButton: button.isDefault
    Accessible.onPressAction: {
        if (button.enabled)
            button.clicked()
    }

    contentItem: Item {
        implicitWidth: Math.ceil(row.implicitWidth)
        implicitHeight: row.implicitHeight

        Row {
            id: row

            x: Math.round((parent.width - width) / 2)
            y: Math.round((parent.height - height) / 2)
            spacing: button.symbolName === "" ? 0 : Theme.buttonSpacing
            opacity: button.kind === "link" && button.down ? Theme.pressedLinkOpacity : 1

            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                visible: button.symbolName !== ""
                name: button.symbolName
                size: button.extent === "small" ? Theme.smallSymbolSize : Theme.rowSymbolSize
                color: button.ink
            }
            Words {
                anchors.verticalCenter: parent.verticalCenter
                text: button.text
                font.family: button.font.family
                font.pixelSize: button.font.pixelSize
                font.weight: button.font.weight
                font.underline: button.kind === "link" && button.hovered
                color: button.ink
                decorative: true
            }
        }
    }

    background: Item {
        ButtonGround {
            anchors.fill: parent
            visible: button.kind !== "link"
            kind: button.look
            hovered: button.hovered
            pressed: button.down
            radius: button.radius
        }
        FocusRing {
            shown: button.visualFocus
            cornerRadius: button.radius
        }
    }

    Loader {
        active: button.help !== "" && button.hovered
        sourceComponent: HelpTip {
            parent: button
            text: button.help
            wanted: button.hovered && !button.down
        }
    }
}
