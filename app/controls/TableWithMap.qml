// A table and the treemap of its rows: above it where there is room for both, else in its place.
import QtQuick
import Tidewright.Controls

FocusScope {
    id: frame

    required property Component table
    required property Component map
    required property bool mapShown
    required property bool hasRoom // for both
    property int margin: 0 // around the map, left, right and below

    readonly property bool both: mapShown && hasRoom

    property bool moving: false // not when it first comes
    property real shownShare: both ? 1 : 0 // of the map above the table

    Component.onCompleted: moving = true

    Behavior on shownShare {
        enabled: frame.moving && frame.hasRoom
        SpringMotion {}
    }

    Loader {
        active: frame.mapShown || frame.shownShare > 0
        focus: !tableLoader.active
        x: frame.margin
        width: frame.width - 2 * x
        height: frame.hasRoom ? Theme.mapHeight : frame.height - frame.margin
        opacity: frame.hasRoom ? frame.shownShare : 1
        sourceComponent: frame.map
    }
    Loader {
        id: tableLoader

        active: !frame.mapShown || frame.hasRoom
        focus: active
        y: Math.round((Theme.mapHeight + Theme.cardSpacing) * frame.shownShare)
        width: frame.width
        height: frame.height - y
        sourceComponent: frame.table
    }
}
