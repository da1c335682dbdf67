// The orb that shows how full the disk is. It fills up from empty when it comes into being.
import QtQuick
import Tidewright.Controls

DiskOrb {
    id: orb

    property string label: ""

    implicitWidth: Theme.orbSize
    implicitHeight: Theme.orbSize
    isDark: Theme.isDark
    reduceMotion: Theme.reduceMotion

    Accessible.role: Accessible.Graphic
    Accessible.name: orb.label
}
