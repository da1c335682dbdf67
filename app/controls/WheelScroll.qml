// Scrolls by wheel and touchpad, and to a place. Flickable's own way, which it takes the place of,
// lets the content be dragged with the mouse as well.
import QtQuick
import Tidewright.Controls

WheelHandler {
    id: wheel

    required property Flickable area

    readonly property bool isVertical: orientation === Qt.Vertical
    readonly property string axis: isVertical ? "contentY" : "contentX"

    function least() {
        return isVertical ? area.originY - area.topMargin : area.originX - area.leftMargin
    }
    function most() {
        const end = isVertical ? area.originY + area.contentHeight + area.bottomMargin - area.height
                               : area.originX + area.contentWidth + area.rightMargin - area.width
        return Math.max(least(), end)
    }
    function place() {
        return motion.running ? motion.to : area[axis]
    }
    function jumpTo(goal) {
        motion.stop()
        area[axis] = Math.max(least(), Math.min(goal, most()))
    }
    function glideTo(goal) {
        motion.stop()
        motion.to = Math.max(least(), Math.min(goal, most()))
        motion.start()
    }
    function stop() {
        motion.stop()
    }
    /// So far that a stretch of the content is in view.
    function reveal(start, end) {
        const margin = Theme.revealMargin
        const extent = isVertical ? area.height : area.width
        if (start - margin < place())
            glideTo(start - margin)
        else if (end + margin > place() + extent)
            glideTo(Math.min(end + margin - extent, start - margin))
    }

    acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
    target: null
    enabled: most() > least() // else the wheel is left to what it stands in
    onWheel: event => {
        const pixels = isVertical ? event.pixelDelta.y : event.pixelDelta.x
        const angle = isVertical ? event.angleDelta.y : event.angleDelta.x
        const notch = 120
        const way = pixels !== 0 ? -pixels
                                 : -angle / notch * Qt.styleHints.wheelScrollLines * Theme.wheelLine
        const goal = place() + way
        if (pixels !== 0 || Math.abs(angle) < notch)
            jumpTo(goal)
        else
            glideTo(goal)
    }

    property SnappyMotion motion: SnappyMotion {
        target: wheel.area
        property: wheel.axis
    }
}
