// What can be done with the focused item.
import QtQuick
import QtQml
import Tidewright.Controls
import Tidewright.State

ContextMenu {
    id: menu

    required property ItemListModel items

    readonly property bool selected: items.focused.selected

    MenuEntry {
        text: qsTr("Reveal in Finder")
        onTriggered: menu.items.reveal(menu.items.focusedRow)
    }
    Instantiator {
        active: menu.items.focused.selectable
        delegate: MenuEntry {
            // One that has been taken out may outlive the menu for a moment.
            text: menu && menu.selected ? qsTr("Deselect") : qsTr("Select for Cleaning")
            onTriggered: menu.items.setSelected(menu.items.focusedRow, !menu.selected)
        }
        onObjectAdded: (index, object) => menu.insertItem(1, object)
        onObjectRemoved: (index, object) => menu.removeItem(object)
    }
}
