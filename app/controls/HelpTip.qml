// A word of help below what the pointer rests on, or above it where there is no room.
import QtQuick
import QtQuick.Templates as T
import Tidewright.Controls

T.ToolTip {
    id: tip

    property bool wanted: false // it is shown after a while
    property bool isAbove: false

    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: {
        if (!parent)
            return 0
        return isAbove ? -height - Theme.tipDistance : parent.height + Theme.tipDistance
    }
    implicitWidth: Math.min(Math.ceil(measured.implicitWidth), Theme.tipWidth) + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    margins: Theme.tipDistance
    horizontalPadding: Theme.tipPadding
    verticalPadding: Theme.tipPadding / 2
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent
                 | T.Popup.CloseOnReleaseOutsideParent

    onWantedChanged: {
        if (!wanted)
            close()
    }
    onAboutToShow: {
        const below = parent.mapToItem(null, 0, parent.height).y
        isAbove = below + Theme.tipDistance + implicitHeight > T.Overlay.overlay.height
    }

    contentItem: Words {
        text: tip.text
        font: Theme.subheadline
        wrapMode: Text.Wrap
        decorative: true
    }
    background: CardGround {
        topColor: Theme.raised
        radius: Theme.buttonRadius
    }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.crossFadeDuration }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.crossFadeDuration }
    }

    Timer {
        interval: Theme.tipDelay
        running: tip.wanted
        onTriggered: tip.open()
    }
    Text { // as wide as the words in one line
        id: measured

        visible: false
        text: tip.text
        textFormat: Text.PlainText
        font: Theme.subheadline
    }
}
