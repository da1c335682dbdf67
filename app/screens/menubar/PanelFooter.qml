// What concerns the program itself.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

RowLayout {
    id: footer

    required property ScreenModels models

    signal leaving

    spacing: Theme.buttonSpacing

    PushButton {
        kind: "link"
        extent: "small"
        text: qsTr("About Tidewright")
        onClicked: {
            footer.leaving();
            footer.models.shell.showAbout();
        }
    }
    Item {
        Layout.fillWidth: true
    }
    IconButton {
        symbolName: "gearshape"
        text: qsTr("Settings…")
        onClicked: {
            footer.leaving();
            footer.models.shell.openSettings();
        }
    }
    IconButton {
        symbolName: "power"
        text: qsTr("Quit Tidewright")
        onClicked: footer.models.shell.quit()
    }
}
