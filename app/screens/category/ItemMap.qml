// Where the bytes of a category are: its items as a treemap.
import QtQuick
import Tidewright.Controls
import Tidewright.State

Treemap {
    id: map

    required property ItemListModel items

    signal detailsAsked(shown: bool) // or, if not, to be shown or no longer

    label: qsTr("Map of %1").arg(items.title)
    emptyText: items.empty.message
    model: items
    nameRoles: ["title", "version"]
    keyRole: "itemID"
    kindRole: "decision"
    kindTitleRole: "decisionTitle"
    kindSymbolRole: "decisionSymbol"
    noteRole: "reason"
    tickedRole: "selected"
    tickableRole: "selectable"
    currentRow: items.focusedRow
    onPicked: row => items.focusedRow = row
    onTickAsked: (row, on) => items.setSelected(row, on)
    onOpened: (row, byPointer) => detailsAsked(byPointer)
    onMenuAsked: (x, y) => menu.popup(map, x, y)

    Keys.onEscapePressed: event => {
        event.accepted = items.search !== ""
        items.search = ""
    }

    ItemMenu {
        id: menu

        items: map.items
        onAboutToHide: map.forceActiveFocus(Qt.PopupFocusReason)
    }
}
