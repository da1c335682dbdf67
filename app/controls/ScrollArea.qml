// What is larger than its place. It follows the keyboard's focus to what it has out of view.
import QtQuick
import QtQuick.Templates as T
import Tidewright.Controls

Flickable {
    id: area

    readonly property Item focused: Window.activeFocusItem

    function holds(item) {
        for (let ancestor = item; ancestor; ancestor = ancestor.parent)
            if (ancestor === area.contentItem)
                return true
        return false
    }
    function reveal(item) {
        const start = item.mapToItem(contentItem, 0, 0)
        vertically.reveal(start.y, start.y + item.height)
        horizontally.reveal(start.x, start.x + item.width)
    }

    contentWidth: width
    clip: true
    interactive: false
    boundsBehavior: Flickable.StopAtBounds
    onFocusedChanged: {
        if (focused && holds(focused))
            reveal(focused)
    }

    Keys.onPressed: event => {
        const page = height - Theme.pageOverlap
        event.accepted = true
        switch (event.key) {
        case Qt.Key_Up: vertically.glideTo(vertically.place() - Theme.keyStep); break
        case Qt.Key_Down: vertically.glideTo(vertically.place() + Theme.keyStep); break
        case Qt.Key_PageUp: vertically.glideTo(vertically.place() - page); break
        case Qt.Key_PageDown: vertically.glideTo(vertically.place() + page); break
        case Qt.Key_Home: vertically.glideTo(vertically.least()); break
        case Qt.Key_End: vertically.glideTo(vertically.most()); break
        default: event.accepted = false
        }
    }

    T.ScrollBar.vertical: SlimBar { onPressedChanged: vertically.stop() }
    T.ScrollBar.horizontal: SlimBar { onPressedChanged: horizontally.stop() }

    WheelScroll {
        id: vertically

        area: area
        orientation: Qt.Vertical
    }
    WheelScroll {
        id: horizontally

        area: area
        orientation: Qt.Horizontal
    }
}
