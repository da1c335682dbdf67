import QtQuick
import QtQuick.Templates as T
import Tidewright.Controls

T.ProgressBar {
    id: line

    property string label: ""

    implicitWidth: Theme.progressWidth
    implicitHeight: Theme.progressHeight

    Accessible.role: Accessible.ProgressBar
    Accessible.name: line.label
    Accessible.description: qsTr("%1 percent").arg(Math.round(100 * line.position))

    background: Rectangle {
        radius: height / 2
        color: Theme.track
    }
    contentItem: Item {
        Rectangle {
            // Never shorter than it is round, but for nothing at all.
            width: line.visualPosition > 0 ? Math.max(line.visualPosition * parent.width, height) : 0
            height: parent.height
            radius: height / 2
            color: Theme.accent

            Behavior on width { SpringMotion {} }
        }
    }
}
