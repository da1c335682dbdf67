// The rows of a table. The keyboard moves among them, and finds one by the beginning of its name.
import QtQuick
import Tidewright.Controls
import Tidewright.State

FocusScope {
    id: rowList

    required property TableModel rows
    required property string name // for readers
    property alias delegate: list.delegate
    property string sectionProperty: "" // none
    property Component sectionDelegate: null
    property alias topMargin: list.topMargin
    property alias bottomMargin: list.bottomMargin
    property alias currentItem: list.currentItem
    property real menuX: 0 // where a key opens the menu

    property bool keyboard: true // what was used last
    property string typed: "" // within the last second

    signal activated() // the focused row, by return
    signal spaced() // the same, by space
    signal menuAsked(x: real, y: real) // in the focused row

    function focusByPointer(row: int) {
        keyboard = false
        rows.focusedRow = row
        list.forceActiveFocus(Qt.MouseFocusReason)
    }

    function moveTo(row: int) {
        keyboard = true
        if (rows.count > 0)
            rows.focusedRow = Math.max(0, Math.min(row, rows.count - 1))
    }

    function moveBy(count: int) {
        moveTo(rows.focusedRow < 0 ? 0 : rows.focusedRow + count)
    }

    function rowsOfPage(): int {
        return list.currentItem ? Math.max(1, Math.floor(list.height / list.currentItem.height) - 1) : 1
    }

    function find(text: string) {
        typed += text
        forgetting.restart()
        // What goes on may still mean the row that its beginning has found.
        const before = typed.length === 1 ? rows.focusedRow : rows.focusedRow - 1
        const row = rows.rowStartingWith(typed, before)
        if (row >= 0)
            moveTo(row)
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
            moveTo(rows.count - 1)
            return true
        case Qt.Key_Return:
        case Qt.Key_Enter:
            if (!event.isAutoRepeat)
                activated()
            return true
        case Qt.Key_Menu:
            openMenu()
            return true
        case Qt.Key_F10:
            if (shifted)
                openMenu()
            return shifted
        case Qt.Key_Space:
            if (typed === "")
                spaced()
            else
                find(" ")
            return true
        }
        if (event.text.length !== 1 || event.text < " " || event.text === "\u007f")
            return false
        find(event.text)
        return true
    }

    function openMenu() {
        if (list.currentItem)
            menuAsked(menuX, list.currentItem.height)
    }

    onActiveFocusChanged: {
        if (!activeFocus)
            keyboard = true
    }

    Timer {
        id: forgetting

        interval: 1000
        onTriggered: rowList.typed = ""
    }

    ListArea {
        id: list

        anchors.fill: parent
        focus: true
        activeFocusOnTab: true
        reuseItems: true
        keyNavigationEnabled: false
        model: rowList.rows
        currentIndex: rowList.rows.focusedRow
        onCurrentIndexChanged: positionViewAtIndex(currentIndex, ListView.Contain)

        Keys.onPressed: event => event.accepted = rowList.take(event)

        Accessible.role: Accessible.List
        Accessible.name: rowList.name

        section.property: rowList.sectionProperty
        section.delegate: rowList.sectionDelegate
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
            shown: list.activeFocus && list.currentIndex < 0 && rowList.keyboard
            distance: -2 * border.width
        }
    }
}
