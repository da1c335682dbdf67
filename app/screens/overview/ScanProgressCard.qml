// How far the scan is.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

GlassCard {
    id: card

    required property ScreenModels models

    ColumnLayout {
        width: parent.width
        spacing: 10

        RowLayout {
            spacing: 12

            Words {
                Layout.fillWidth: true
                text: card.models.overview.scanMessage
                font: Theme.headline
                elide: Text.ElideRight
            }
            PushButton {
                extent: "small"
                text: qsTr("Cancel")
                onClicked: card.models.app.cancelScan()
            }
        }
        ProgressLine {
            Layout.fillWidth: true
            value: card.models.overview.scanFraction
            label: card.models.overview.scanMessage
        }
        Words {
            text: qsTr("Reading only. Nothing changes on disk during a scan.")
            font: Theme.caption
            color: Theme.text2
        }
    }
}
