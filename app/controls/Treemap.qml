// Where the bytes of a list are: a rectangle for each row, as large as its part of all. Roles of the
// model say what is shown; the current row and the ticks are those of the list.
import QtQuick
import Tidewright.Controls

FocusScope {
    id: treemap

    required property string label
    property int currentRow: -1
    property string emptyText: "" // in place of rows where there are none

    property alias model: picture.model
    property alias nameRoles: picture.nameRoles
    property alias keyRole: picture.keyRole
    property alias kindRole: picture.kindRole
    property alias kindTitleRole: picture.kindTitleRole
    property alias kindSymbolRole: picture.kindSymbolRole
    property alias noteRole: picture.noteRole
    property alias tickedRole: picture.tickedRole
    property alias tickableRole: picture.tickableRole

    property bool keyboard: true // what was used last

    signal picked(row: int)
    signal tickAsked(row: int, on: bool)
    signal opened(row: int, byPointer: bool)
    signal menuAsked(x: real, y: real) // of the current row

    readonly property string currentText: {
        picture.revision
        return picture.spokenName(currentRow)
    }

    function pick(row: int) {
        if (row >= 0)
            picked(row)
    }
    function moveTo(row: int) {
        keyboard = true
        pick(row)
    }
    function tick(row: int) {
        if (picture.isTickable(row))
            tickAsked(row, !picture.isTicked(row))
    }
    function askMenu() {
        const place = picture.currentPlace
        if (place.width > 0)
            menuAsked(place.x, place.y + place.height)
    }
    function take(event) {
        const shifted = event.modifiers === Qt.ShiftModifier
        if ((event.modifiers & ~(Qt.ShiftModifier | Qt.KeypadModifier)) !== Qt.NoModifier)
            return false
        switch (event.key) {
        case Qt.Key_Left:
            moveTo(picture.rowBeyond(Qt.LeftEdge))
            return true
        case Qt.Key_Right:
            moveTo(picture.rowBeyond(Qt.RightEdge))
            return true
        case Qt.Key_Up:
            moveTo(picture.rowBeyond(Qt.TopEdge))
            return true
        case Qt.Key_Down:
            moveTo(picture.rowBeyond(Qt.BottomEdge))
            return true
        case Qt.Key_Home:
            moveTo(picture.largestRow())
            return true
        case Qt.Key_End:
            moveTo(picture.smallestRow())
            return true
        case Qt.Key_Space:
            keyboard = true
            tick(currentRow)
            return true
        case Qt.Key_Return:
        case Qt.Key_Enter:
            keyboard = true
            if (currentRow >= 0)
                opened(currentRow, false)
            return true
        case Qt.Key_Menu:
            askMenu()
            return true
        case Qt.Key_F10:
            if (shifted)
                askMenu()
            return shifted
        }
        return false
    }

    implicitHeight: Theme.mapHeight
    activeFocusOnTab: true
    Keys.onPressed: event => event.accepted = treemap.take(event)
    onActiveFocusChanged: {
        if (!activeFocus)
            keyboard = true
    }

    Accessible.role: Accessible.List
    Accessible.name: treemap.label
    Accessible.description: treemap.currentText
    Accessible.focusable: true

    TreemapPicture {
        id: picture

        anchors.fill: parent
        currentRow: treemap.currentRow
        kindColors: Theme.decisionColors
        grounds: Theme.decisionGrounds
        tickedGrounds: Theme.tickedGrounds
        hoverColor: Theme.hoverLight
        restColor: Theme.hover
        nameColor: Theme.text
        sizeColor: Theme.text2
        tickGround: Theme.accent
        tickColor: Theme.onAccent
        nameFont: Theme.medium(Theme.callout)
        sizeFont: Theme.subheadline
        onMoveAsked: moving.restart()
        onHoveredRowChanged: {
            tip.active = false
            tip.active = hoveredRow >= 0
        }
    }
    SpringMotion {
        id: moving

        target: picture
        property: "share"
        from: 0
        to: 1
    }
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onPressed: event => {
            treemap.keyboard = false
            treemap.pick(picture.rowAt(event.x, event.y))
            treemap.forceActiveFocus(Qt.MouseFocusReason)
        }
        onClicked: event => {
            if (event.button === Qt.RightButton && picture.rowAt(event.x, event.y) >= 0)
                treemap.menuAsked(event.x, event.y)
        }
        onDoubleClicked: event => {
            const row = picture.rowAt(event.x, event.y)
            if (event.button === Qt.LeftButton && row >= 0)
                treemap.opened(row, true)
        }
    }

    component Spoken: Item {
        required property int row

        readonly property int revision: picture.revision // of all that follows
        readonly property bool isThere: row >= 0 && row < picture.count
        readonly property bool tickable: revision >= 0 && picture.isTickable(row)

        Accessible.role: Accessible.ListItem
        Accessible.name: revision >= 0 ? picture.spokenName(row) : ""
        Accessible.description: revision >= 0 ? picture.note(row) : ""
        Accessible.selectable: true
        Accessible.selected: row === treemap.currentRow
        Accessible.checkable: tickable
        Accessible.checked: revision >= 0 && picture.isTicked(row)
        Accessible.onPressAction: treemap.pick(row)
        Accessible.onToggleAction: treemap.tick(row)
    }

    // A reader finds the largest rows, and the current one in any case.
    Repeater {
        model: picture.spokenCount
        delegate: Spoken {
            required property int index

            readonly property rect place: revision >= 0 ? picture.placeOf(row) : Qt.rect(0, 0, 0, 0)

            row: revision >= 0 ? picture.spokenRow(index) : -1
            x: place.x
            y: place.y
            width: place.width
            height: place.height
            Accessible.ignored: !isThere || row === treemap.currentRow
        }
    }
    Spoken {
        id: current

        x: picture.currentPlace.x
        y: picture.currentPlace.y
        width: picture.currentPlace.width
        height: picture.currentPlace.height
        row: treemap.currentRow
        focus: isThere
        Accessible.ignored: !isThere
        Accessible.focusable: true
        onRowChanged: {
            if (activeFocus)
                picture.tellFocus(current)
        }

        Rectangle { // beside the ring there is no need for it
            anchors.fill: parent
            visible: parent.width > 0 && !ring.shown
            radius: picture.cornerRadius
            color: "transparent"
            border.width: Theme.focusRingWidth
            border.color: Theme.accent
        }
        FocusRing {
            id: ring

            shown: current.activeFocus && treemap.keyboard && current.width > 0
            cornerRadius: picture.cornerRadius
            distance: 0 // in the gap
        }
    }
    FocusRing {
        shown: treemap.activeFocus && treemap.keyboard && current.width === 0
        cornerRadius: picture.cornerRadius
    }
    Loader {
        anchors.centerIn: parent
        active: picture.isBlank
        sourceComponent: Words {
            text: picture.count > 0 ? qsTr("Nothing in this list takes up space.") : treemap.emptyText
            color: Theme.text2
        }
    }
    Item { // what the pointer rests on
        x: picture.hoveredPlace.x
        y: picture.hoveredPlace.y
        width: picture.hoveredPlace.width
        height: picture.hoveredPlace.height

        Loader {
            id: tip

            active: false
            sourceComponent: HelpTip {
                parent: tip.parent
                text: picture.tip(picture.hoveredRow)
                wanted: true
            }
        }
    }
}
