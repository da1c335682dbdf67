// A list on a card of its own inside a sheet.
import QtQuick
import Tidewright.Controls
import Tidewright.Screens

Item {
    id: inset

    required property string name
    property alias model: list.model
    property alias delegate: list.delegate
    property alias header: list.header
    property alias section: list.section

    CardGround {
        anchors.fill: parent
        topColor: Theme.surface
        bottomColor: Theme.surface
        edgeColor: Theme.surfaceTop
        outlineColor: Theme.hair
        radius: Theme.listRadius
    }
    ListArea {
        id: list
        anchors { fill: parent; margins: 1 }
        topMargin: 4
        bottomMargin: 6
        activeFocusOnTab: true
        Accessible.role: Accessible.List
        Accessible.name: inset.name
    }
    FocusRing {
        shown: list.activeFocus
        cornerRadius: Theme.listRadius
    }
}
