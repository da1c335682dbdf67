// What can be done with the focused row of what was found.
import QtQuick
import Tidewright.Controls
import Tidewright.State

ContextMenu {
    id: menu

    required property FoundListModel found

    MenuEntry {
        text: qsTr("Reveal in Finder")
        onTriggered: menu.found.reveal(menu.found.focusedRow)
    }
}
