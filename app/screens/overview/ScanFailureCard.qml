// Why the last scan gave no report, and the way to try it again.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

GlassCard {
    id: card

    required property ScreenModels models

    tint: Theme.red

    RowLayout {
        width: parent.width
        spacing: 12

        Symbol {
            Layout.alignment: Qt.AlignTop
            name: "exclamationmark.triangle.fill"
            size: Theme.cardSymbolSize
            color: Theme.red
        }
        Words {
            Layout.fillWidth: true
            text: card.models.overview.scanFailure
            color: Theme.red
            wrapMode: Text.Wrap
        }
        PushButton {
            extent: "small"
            text: qsTr("Try Again")
            onClicked: card.models.app.scan()
        }
    }
}
