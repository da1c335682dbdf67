// Where the bytes of what was found are, as a treemap.
import QtQuick
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

Treemap {
    id: map

    required property FoundListModel found
    required property string name // of what was found

    label: qsTr("Map of %1").arg(name)
    emptyText: found.empty.message
    model: found
    nameRoles: ["name"]
    keyRole: "path"
    noteRole: "dateText"
    currentRow: found.focusedRow
    onPicked: row => found.focusedRow = row
    onOpened: row => found.reveal(row)
    onMenuAsked: (x, y) => menu.popup(map, x, y)

    FoundMenu {
        id: menu

        found: map.found
        onAboutToHide: map.forceActiveFocus(Qt.PopupFocusReason)
    }
}
