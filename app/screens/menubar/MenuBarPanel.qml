// The panel of the status item: the state of the disk and the next sensible action. Who shows it
// places it; it goes when it is left.
import QtQuick
import QtQuick.Window
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

Window {
    id: panel

    required property ScreenModels models
    /// Whether the desktop shows through where the window is clear. Under X11 nothing says so, and
    /// round corners would be black where it doesn't.
    property bool isComposed: Qt.platform.pluginName !== "xcb"
    /// Of the window around the panel, for its shadow.
    readonly property int margin: isComposed ? Theme.shadowFarBlur + Theme.shadowFarOffset : 0

    title: "Tidewright"
    flags: Qt.Tool | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint | Qt.NoDropShadowWindowHint
    color: isComposed ? "transparent" : Theme.window
    width: Theme.panelWidth + 2 * margin
    height: face.implicitHeight + 2 * margin

    onActiveChanged: {
        if (!active)
            hide();
    }
    onVisibleChanged: {
        models.menuBar.isWatched = visible;
        if (visible)
            face.begin();
    }

    MouseArea { // around the panel lies what the user wants to see there
        anchors.fill: parent
        onPressed: panel.hide()
    }
    CardGround {
        anchors.fill: face
        topColor: Theme.window
        outlineColor: panel.isComposed ? Theme.hair : Theme.track // it has no shadow then
        radius: panel.isComposed ? Theme.cardRadius : 0
        hasShadow: panel.isComposed

        MouseArea {
            anchors.fill: parent
        }
    }
    PanelFace {
        id: face
        x: panel.margin
        y: panel.margin
        width: Theme.panelWidth
        models: panel.models
        focus: true
        Keys.onEscapePressed: panel.hide()
        onLeaving: panel.hide()
    }
}
