// A sheet over the window, in its middle. What is in it fills it.
import QtQuick
import QtQuick.Templates as T
import Tidewright.Controls

T.Popup {
    id: sheet

    required property string title
    property bool dismissible: true // by Escape and by a click beside it
    default property alias content: body.data

    property real rise: 0
    property bool isPressed: false // on it or beside it, just now
    property Item formerFocus: null
    property int formerReason: Qt.PopupFocusReason

    /// It has been closed in one of these ways.
    signal dismissed()

    function forgetPress() {
        isPressed = false
    }

    parent: T.Overlay.overlay
    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: parent ? Math.round((parent.height - height) / 2) + rise : 0
    width: Math.min(Theme.sheetWidth, parent ? parent.width : Theme.sheetWidth)
    height: Math.min(Theme.sheetHeight, parent ? parent.height : Theme.sheetHeight)
    modal: true
    focus: true
    padding: 0
    closePolicy: dismissible ? T.Popup.CloseOnPressOutside : T.Popup.NoAutoClose

    onAboutToShow: {
        formerFocus = parent.Window.activeFocusItem
        const wasSeen = formerFocus instanceof T.Control && formerFocus.visualFocus
        formerReason = wasSeen ? Qt.TabFocusReason : Qt.PopupFocusReason
    }
    onAboutToHide: {
        if (isPressed)
            dismissed()
    }
    onClosed: {
        if (formerFocus)
            formerFocus.forceActiveFocus(formerReason)
    }

    T.Overlay.onPressed: {
        sheet.isPressed = true
        Qt.callLater(sheet.forgetPress)
    }
    T.Overlay.modal: Rectangle {
        color: Theme.scrim

        Behavior on opacity { NumberAnimation { duration: Theme.crossFadeDuration } }
    }
    background: CardGround {
        topColor: Theme.window
        radius: Theme.sheetRadius
    }
    contentItem: FocusScope {
        id: body

        focus: true
        Keys.onEscapePressed: {
            if (!sheet.dismissible)
                return
            sheet.close()
            sheet.dismissed()
        }

        Accessible.role: Accessible.Dialog
        Accessible.name: sheet.title
    }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.crossFadeDuration }
        SpringMotion { property: "rise"; from: Theme.sheetRise; to: 0 }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.crossFadeDuration }
    }
}
