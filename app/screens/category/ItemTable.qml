// The items of a category: a row each, under the headings of their groups as long as they stand in
// the order of the report.
import QtQuick
import Tidewright.Controls
import Tidewright.State

FocusScope {
    id: table

    required property ItemListModel items
    required property ItemColumns columns

    signal detailsAsked() // to be shown, or no longer

    readonly property int headingHeight: 30
    readonly property int groupSpacing: 14 // above the heading of a group

    property bool keyboard: true // what was used last
    property string typed: "" // within the last second

    function moveTo(row: int) {
        keyboard = true
        if (items.count > 0)
            items.focusedRow = Math.max(0, Math.min(row, items.count - 1))
    }

    function moveBy(rows: int) {
        moveTo(items.focusedRow < 0 ? 0 : items.focusedRow + rows)
    }

    function rowsOfPage(): int {
        const height = list.currentItem ? list.currentItem.height : headingHeight
        return Math.max(1, Math.floor(list.height / height) - 1)
    }

    function tickFocused() {
        if (items.focused.isPresent)
            items.setSelected(items.focusedRow, !items.focused.selected)
    }

    function find(text: string) {
        typed += text
        forgetting.restart()
        // What goes on may still mean the row that its beginning has found.
        const before = typed.length === 1 ? items.focusedRow : items.focusedRow - 1
        const row = items.rowStartingWith(typed, before)
        if (row >= 0)
            moveTo(row)
    }

    function openMenu(x: real, y: real) {
        if (items.focused.isPresent)
            menu.popup(list.currentItem, x, y)
    }

    function take(event) {
        keyboard = true
        const shifted = event.modifiers === Qt.ShiftModifier
        const plain = (event.modifiers & ~(Qt.ShiftModifier | Qt.KeypadModifier)) === Qt.NoModifier
        if (!plain)
            return false
        switch (event.key) {
        case Qt.Key_Up:
            moveBy(-1)
            return true
        case Qt.Key_Down:
            moveBy(1)
            return true
        case Qt.Key_PageUp:
            moveBy(-rowsOfPage())
            return true
        case Qt.Key_PageDown:
            moveBy(rowsOfPage())
            return true
        case Qt.Key_Home:
            moveTo(0)
            return true
        case Qt.Key_End:
            moveTo(items.count - 1)
            return true
        case Qt.Key_Return:
        case Qt.Key_Enter:
            detailsAsked()
            return true
        case Qt.Key_Menu:
            openMenu(columns.itemX, list.currentItem ? list.currentItem.height : 0)
            return true
        case Qt.Key_F10:
            if (shifted)
                openMenu(columns.itemX, list.currentItem ? list.currentItem.height : 0)
            return shifted
        case Qt.Key_Escape:
            if (items.search === "")
                return false
            items.search = ""
            return true
        case Qt.Key_Space:
            if (typed === "")
                tickFocused()
            else
                find(" ")
            return true
        }
        if (event.text.length !== 1 || event.text < " " || event.text === "\u007f")
            return false
        find(event.text)
        return true
    }

    onActiveFocusChanged: {
        if (!activeFocus)
            keyboard = true
    }

    Timer {
        id: forgetting

        interval: 1000
        onTriggered: table.typed = ""
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
    ListArea {
        id: list

        y: table.headingHeight + 1
        width: table.width
        height: table.height - y
        topMargin: table.columns.margin / 2
        bottomMargin: table.columns.margin
        focus: true
        activeFocusOnTab: true
        reuseItems: true
        keyNavigationEnabled: false
        model: table.items
        currentIndex: table.items.focusedRow
        onCurrentIndexChanged: positionViewAtIndex(currentIndex, ListView.Contain)

        Keys.onPressed: event => event.accepted = table.take(event)

        Accessible.role: Accessible.List
        Accessible.name: table.items.title

        section.property: table.items.sortColumn < 0 ? "group" : ""
        section.delegate: Words {
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
        delegate: ItemRow {
            width: ListView.view.width
            columns: table.columns
            focused: index === table.items.focusedRow
            showsRing: activeFocus && table.keyboard
            onPressed: {
                table.keyboard = false
                table.items.focusedRow = index
                list.forceActiveFocus(Qt.MouseFocusReason)
            }
            onMenuAsked: (x, y) => table.openMenu(x, y)
            onTickAsked: on => table.items.setSelected(index, on)
        }
        remove: Transition {
            enabled: !Theme.reduceMotion
            NumberAnimation { property: "opacity"; to: 0; duration: Theme.crossFadeDuration }
        }
        removeDisplaced: Transition {
            enabled: !Theme.reduceMotion
            SpringMotion { property: "y" }
        }

        FocusRing {
            parent: list
            shown: list.activeFocus && list.currentIndex < 0 && table.keyboard
            distance: -2 * border.width
        }
    }
    Loader {
        anchors.centerIn: list
        active: table.items.count === 0
        sourceComponent: Words {
            text: table.items.empty.message
            color: Theme.text2
        }
    }

    ItemMenu {
        id: menu

        items: table.items
        onAboutToHide: list.forceActiveFocus(Qt.PopupFocusReason)
    }
}
