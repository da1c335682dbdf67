// The bar of what scrolls, to be seen while it moves and while the pointer is on it.
import QtQuick
import QtQuick.Templates as T
import Tidewright.Controls

T.ScrollBar {
    id: bar

    readonly property bool isSeen: hovered || pressed || lingering.running

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    padding: Theme.scrollBarMargin
    minimumSize: Theme.scrollBarLength / Math.max(orientation === Qt.Horizontal ? width : height, 1)
    visible: size < 1
    hoverEnabled: true
    onPositionChanged: lingering.restart()

    contentItem: Rectangle {
        implicitWidth: Theme.scrollBarWidth
        implicitHeight: Theme.scrollBarWidth
        radius: Theme.scrollBarWidth / 2
        color: bar.pressed || bar.hovered ? Theme.text2 : Theme.text3
        opacity: bar.isSeen ? Theme.scrollBarOpacity : 0

        Behavior on opacity { NumberAnimation { duration: Theme.crossFadeDuration } }
    }

    Timer {
        id: lingering

        interval: Theme.scrollBarLingers
    }
}
