// Shows where the keyboard is, around its parent.
import QtQuick
import Tidewright.Controls

Rectangle {
    required property bool shown
    property real cornerRadius: Theme.buttonRadius // of what it surrounds
    property real distance: Theme.focusRingDistance

    anchors.fill: parent
    anchors.margins: -distance - border.width
    visible: shown
    radius: cornerRadius + distance + border.width
    color: "transparent"
    border.width: Theme.focusRingWidth
    border.color: Theme.accent
}
