// What each category holds.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

ColumnLayout {
    id: block

    required property ScreenModels models

    spacing: 14

    SectionTitle {
        Layout.fillWidth: true
        title: qsTr("Where the space is")
        subtitle: block.models.overview.breakdownSubtitle
    }
    CardGrid {
        Layout.fillWidth: true
        count: tiles.count

        Repeater {
            id: tiles
            model: block.models.categories

            CategoryTile {
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.preferredWidth: 1
                onClicked: block.models.categories.open(index)
            }
        }
    }
}
