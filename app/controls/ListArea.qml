// A list in which the keyboard moves the current row, and the rows move to their places.
import QtQuick
import QtQuick.Templates as T
import Tidewright.Controls

ListView {
    id: area

    /// From a place in the content onwards; headings stand between rows.
    function rowFrom(place, step) {
        for (let near = place; near >= contentY && near < contentY + height; near += step) {
            const row = indexAt(0, near)
            if (row >= 0)
                return row
        }
        return -1
    }
    function turnPages(pages) {
        const rows = rowFrom(contentY + height - 1, -1) - rowFrom(contentY, 1)
        currentIndex = Math.max(0, Math.min(currentIndex + pages * Math.max(rows, 1), count - 1))
    }

    clip: true
    interactive: false
    keyNavigationEnabled: true
    boundsBehavior: Flickable.StopAtBounds
    highlightMoveDuration: Theme.snappyDuration
    highlightResizeDuration: 0

    Keys.onPressed: event => {
        event.accepted = keyNavigationEnabled && count > 0
        if (!event.accepted)
            return
        switch (event.key) {
        case Qt.Key_PageUp: turnPages(-1); break
        case Qt.Key_PageDown: turnPages(1); break
        case Qt.Key_Home: currentIndex = 0; break
        case Qt.Key_End: currentIndex = count - 1; break
        default: event.accepted = false
        }
    }

    displaced: Transition {
        SpringMotion { property: "y" }
    }
    move: Transition {
        SpringMotion { property: "y" }
    }

    T.ScrollBar.vertical: SlimBar { onPressedChanged: vertically.stop() }

    WheelScroll {
        id: vertically

        area: area
        orientation: Qt.Vertical
    }
    WheelScroll {
        area: area
        orientation: Qt.Horizontal
    }
}
