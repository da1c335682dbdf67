// The next step, and the way into the main window.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

FocusScope {
    id: actions

    required property ScreenModels models
    readonly property MenuBarModel bar: models.menuBar
    readonly property bool isScanning: bar.action === "scanning"

    signal leaving

    function begin() {
        const first = isScanning ? open : next.item;
        first.forceActiveFocus(Qt.PopupFocusReason);
    }
    function takeNext(button) {
        if (bar.action === "review") {
            leaving();
            models.shell.openMainWindow();
            models.app.reviewSelection();
            return;
        }
        open.forceActiveFocus(button.focusReason); // the button goes
        models.app.scan();
    }

    implicitHeight: row.implicitHeight

    RowLayout {
        id: row
        anchors.fill: parent
        spacing: Theme.buttonSpacing

        Loader {
            id: next
            Layout.fillWidth: true
            Layout.minimumWidth: 0
            sourceComponent: actions.isScanning ? scanning : button
        }
        PushButton {
            id: open
            text: qsTr("Open Tidewright")
            onClicked: {
                actions.leaving();
                actions.models.shell.openMainWindow();
            }
        }
    }
    Component {
        id: scanning

        RowLayout {
            spacing: Theme.buttonSpacing

            Spinner {}
            Words {
                Layout.fillWidth: true
                text: actions.bar.actionTitle
                font: Theme.callout
                elide: Text.ElideRight
            }
        }
    }
    Component {
        id: button

        PushButton {
            id: pushed
            kind: "prominent"
            text: actions.bar.actionTitle
            isDefault: true
            onClicked: actions.takeNext(pushed)
        }
    }
}
