// What a scan came across for the user to act on by hand: a row each.
import QtQuick
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

FocusScope {
    id: table

    required property FoundListModel found
    required property string name // for readers

    readonly property int headingHeight: 30
    readonly property FoundColumns columns: FoundColumns {
        width: table.width
    }

    function openMenu(x: real, y: real) {
        if (found.focusedRow >= 0)
            menu.popup(rowList.currentItem, x, y)
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

        text: table.found.headerData(column, Qt.Horizontal, Qt.DisplayRole)
        borderShown: headingsHover.hovered
        height: table.headingHeight
        gap: table.columns.gap
        sorted: table.found.sortColumn === column
        descending: table.found.sortOrder === Qt.DescendingOrder
        onClicked: table.found.cycleSort(column)
    }

    Heading {
        column: 0
        x: table.columns.nameX
        width: table.columns.name
    }
    Heading {
        column: 1
        x: table.columns.dateX
        width: table.columns.date
        resizable: true
        onWidthAsked: width => table.columns.askDate(width)
    }
    Heading {
        column: 2
        x: table.columns.sizeX
        width: table.columns.size
        onTheRight: true
        resizable: true
        onWidthAsked: width => table.columns.askSize(width)
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
        rows: table.found
        name: table.name
        menuX: table.columns.nameX
        topMargin: table.columns.margin / 2
        bottomMargin: table.columns.margin
        onActivated: table.found.reveal(table.found.focusedRow)
        onMenuAsked: (x, y) => table.openMenu(x, y)

        delegate: FoundRow {
            width: ListView.view.width
            columns: table.columns
            focused: index === table.found.focusedRow
            showsRing: activeFocus && rowList.keyboard
            onPressed: rowList.focusByPointer(index)
            onMenuAsked: (x, y) => table.openMenu(x, y)
            onRevealed: table.found.reveal(index)
        }
    }
    FoundMenu {
        id: menu

        found: table.found
        onAboutToHide: rowList.forceActiveFocus(Qt.PopupFocusReason)
    }
}
