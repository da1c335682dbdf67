// Where the columns of the item table stand, the same for its headings and its rows. What the
// columns of fixed width leave goes to the item's.
import QtQuick

QtObject {
    id: columns

    required property real width // of the table

    readonly property bool tight: width < 560
    readonly property int margin: tight ? 8 : 12 // from the table's edge to a row's ground
    readonly property int padding: tight ? 12 : 14 // from there to what the row shows
    readonly property int gap: tight ? 8 : 10
    readonly property int tick: 24
    readonly property int itemMinimum: 180
    readonly property int sizeMinimum: 70
    readonly property int sizeMaximum: 110
    readonly property int statusMinimum: 100
    readonly property int statusMaximum: 130

    // What was asked for; where there is no room for it, the columns are narrower.
    property real wantedSize: 85
    property real wantedStatus: 115

    readonly property real fixed: 2 * (margin + padding) + tick + 3 * gap
    readonly property int minimumWidth: 438 // of the columns at their narrowest, in a tight table
    readonly property real room: width - fixed - itemMinimum // of size and status together

    readonly property real size: Math.min(wantedSize, Math.max(sizeMinimum, room - statusMinimum))
    readonly property real status: Math.min(wantedStatus, Math.max(statusMinimum, room - size))
    readonly property real item: Math.max(itemMinimum, width - fixed - size - status)

    readonly property real tickX: margin + padding
    readonly property real itemX: tickX + tick + gap
    readonly property real sizeX: itemX + item + gap
    readonly property real statusX: sizeX + size + gap

    function askSize(width: real) {
        wantedSize = Math.max(sizeMinimum, Math.min(width, sizeMaximum))
    }

    function askStatus(width: real) {
        wantedStatus = Math.max(statusMinimum, Math.min(width, statusMaximum))
    }
}
