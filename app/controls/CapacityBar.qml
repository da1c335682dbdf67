// How full a disk is, and what of it a cleanup would free, at the end of the used part.
import QtQuick
import Tidewright.Controls

CapacityBarPicture {
    id: bar

    property string label: ""

    implicitWidth: Theme.progressWidth
    implicitHeight: Theme.capacityBarHeight
    trackColor: Theme.track
    freedColor: Theme.freed

    Behavior on usedFraction { SpringMotion {} }
    Behavior on freeableFraction { SpringMotion {} }

    Accessible.role: Accessible.Graphic
    Accessible.name: bar.label
}
