// What the system has to allow, where it guards files and applications of the user.
import QtQuick
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

Column {
    id: rows

    required property ScreenModels models
    readonly property bool isGranted: models.app.hasFullDiskAccess

    FormRow {
        text: qsTr("Full Disk Access")
        isFirst: true

        Loader {
            anchors.verticalCenter: parent.verticalCenter
            sourceComponent: rows.isGranted ? granted : asking
        }
    }
    FormRow {
        text: qsTr("App Management")
        help: qsTr("Needed only to clean caches that contain app bundles, such as React Native DevTools.")

        PushButton {
            text: qsTr("Open System Settings")
            extent: "small"
            Accessible.description: qsTr("App Management")
            onClicked: rows.models.settings.openAppManagementSettings()
        }
    }

    Component {
        id: granted

        StatusLine {
            symbolName: "checkmark.circle.fill"
            text: qsTr("Granted")
            font: Theme.body
            color: Theme.green
        }
    }
    Component {
        id: asking

        Row {
            spacing: Theme.buttonSpacing

            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                name: "questionmark.circle.fill"
            }
            PushButton {
                text: qsTr("Open System Settings")
                extent: "small"
                Accessible.description: qsTr("Full Disk Access")
                onClicked: rows.models.app.openFullDiskAccessSettings()
            }
        }
    }
}
