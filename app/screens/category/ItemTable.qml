// The items of a category: a row each, under the headings of their groups as long as they stand in
// the order of the report.
import QtQuick
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

FocusScope {
    id: table

    required property ItemListModel items
    required property ItemColumns columns

    signal detailsAsked() // to be shown, or no longer

    readonly property int headingHeight: 30
    readonly property int groupSpacing: 14 // above the heading of a group

    function tickFocused() {
        if (items.focused.isPresent)
            items.setSelected(items.focusedRow, !items.focused.selected)
    }

    function openMenu(x: real, y: real) {
        if (items.focused.isPresent)
            menu.popup(rowList.currentItem, x, y)
    }

    Keys.onEscapePressed: event => {
        event.accepted = items.search !== ""
        items.search = ""
    }

    Item {
        width: table.width
        height: table.headingHeight

        HoverHandler {
            id: headingsHover
        }
    }

    component Heading: ColumnHeading {
        required property int column

        borderShown: headingsHover.hovered
        height: table.headingHeight
        gap: table.columns.gap
        sorted: table.items.sortColumn === column
        descending: table.items.sortOrder === Qt.DescendingOrder
        onClicked: table.items.cycleSort(column)
    }

    Heading {
        column: 1
        x: table.columns.itemX
        width: table.columns.item
        text: qsTr("Item")
    }
    Heading {
        column: 2
        x: table.columns.sizeX
        width: table.columns.size
        text: qsTr("Size")
        onTheRight: true
        resizable: true
        onWidthAsked: width => table.columns.askSize(width)
    }
    Heading {
        column: 3
        x: table.columns.statusX
        width: table.columns.status
        text: qsTr("Status")
        resizable: true
        onWidthAsked: width => table.columns.askStatus(width)
    }
    Separator {
        y: table.headingHeight
        width: table.width
    }
    RowList {
        id: rowList

        y: table.headingHeight + 1
        width: table.width
        height: table.height - y
        focus: true
        rows: table.items
        name: table.items.title
        menuX: table.columns.itemX
        onActivated: table.detailsAsked()
        onSpaced: table.tickFocused()
        onMenuAsked: (x, y) => table.openMenu(x, y)

        topMargin: table.columns.margin / 2
        bottomMargin: table.columns.margin
        sectionProperty: table.items.sortColumn < 0 ? "group" : ""
        sectionDelegate: groupHeading
        delegate: ItemRow {
            width: ListView.view.width
            columns: table.columns
            focused: index === table.items.focusedRow
            showsRing: activeFocus && rowList.keyboard
            onPressed: rowList.focusByPointer(index)
            onMenuAsked: (x, y) => table.openMenu(x, y)
            onTickAsked: on => table.items.setSelected(index, on)
        }
    }
    Component {
        id: groupHeading

        Words {
            required property string section

            width: ListView.view.width
            topPadding: table.groupSpacing
            bottomPadding: Theme.tableRowPadding - 1
            leftPadding: table.columns.tickX
            rightPadding: table.columns.tickX
            text: section
            font: Theme.semibold(Theme.subheadline)
            color: Theme.text2
            elide: Text.ElideRight
            Accessible.role: Accessible.Heading
        }
    }
    Loader {
        anchors.centerIn: rowList
        active: table.items.count === 0
        sourceComponent: Words {
            text: table.items.empty.message
            color: Theme.text2
        }
    }

    ItemMenu {
        id: menu

        items: table.items
        onAboutToHide: rowList.forceActiveFocus(Qt.PopupFocusReason)
    }
}
