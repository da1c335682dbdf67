// Asks for access to what the system protects.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

GlassCard {
    id: banner

    required property ScreenModels models

    RowLayout {
        width: parent.width
        spacing: 14

        Symbol {
            name: "lock.trianglebadge.exclamationmark.fill"
            size: Theme.title.pixelSize
            color: Theme.orange
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 3

            Words {
                text: qsTr("Allow Full Disk Access")
                font: Theme.headline
            }
            Words {
                Layout.fillWidth: true
                text: qsTr("macOS protects the Trash and some app caches. Turn on Tidewright in System Settings → Privacy & Security → Full Disk Access so it can measure them. Tidewright still never touches anything you don't approve.")
                font: Theme.callout
                color: Theme.text2
                wrapMode: Text.Wrap
            }
        }
        PushButton {
            text: qsTr("Open System Settings")
            onClicked: banner.models.app.openFullDiskAccessSettings()
        }
        PushButton {
            text: qsTr("I've Turned It On")
            onClicked: banner.models.app.checkFullDiskAccess()
        }
    }
}
