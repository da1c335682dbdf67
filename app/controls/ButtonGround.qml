// What a button is drawn on.
import QtQuick
import Tidewright.Controls

Item {
    id: ground

    property string kind: "plain" // or prominent, destructive
    property bool hovered: false
    property bool pressed: false
    property real radius: Theme.buttonRadius

    readonly property bool isProminent: kind === "prominent"
    readonly property color color: {
        if (isProminent)
            return pressed ? Theme.accentPressed : hovered ? Theme.accentHover : Theme.accent
        return hovered && !pressed ? Theme.surfaceTop : Theme.surface
    }

    CardGround {
        anchors.fill: parent
        radius: ground.radius
        topColor: ground.color
        edgeColor: ground.isProminent ? Theme.accentHover : Theme.surfaceTop
        outlineColor: ground.isProminent ? "transparent" : Theme.hair
        shadowFar: "transparent"
    }
    Rectangle {
        anchors.fill: parent
        visible: ground.pressed && !ground.isProminent
        radius: ground.radius
        color: Theme.pressed
    }
}
