// Where the columns of a table of finds stand, the same for its headings and its rows. What the
// others leave goes to the name's.
import QtQuick

QtObject {
    id: columns

    required property real width // of the table

    readonly property int margin: 10 // from the table's edge to a row's ground
    readonly property int padding: 14 // from there to what the row shows
    readonly property int gap: 16
    readonly property int nameMinimum: 180
    readonly property int dateMinimum: 140
    readonly property int sizeMinimum: 70

    // What was asked for; where there is no room for it, the columns are narrower.
    property real wantedDate: 200
    property real wantedSize: 90

    readonly property real fixed: 2 * (margin + padding) + 2 * gap
    readonly property real room: width - fixed - nameMinimum // of date and size together

    readonly property real date: Math.min(wantedDate, Math.max(dateMinimum, room - sizeMinimum))
    readonly property real size: Math.min(wantedSize, Math.max(sizeMinimum, room - date))
    readonly property real name: Math.max(nameMinimum, width - fixed - date - size)

    readonly property real nameX: margin + padding
    readonly property real dateX: nameX + name + gap
    readonly property real sizeX: dateX + date + gap

    function askDate(width: real) {
        wantedDate = Math.max(dateMinimum, Math.min(width, room - size))
    }

    function askSize(width: real) {
        wantedSize = Math.max(sizeMinimum, Math.min(width, room - date))
    }
}
