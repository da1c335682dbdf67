// The disk as a bar, and when it was measured.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

ColumnLayout {
    id: capacity

    required property ScreenModels models
    readonly property OverviewModel overview: models.overview

    spacing: 6

    CapacityBar {
        Layout.fillWidth: true
        usedFraction: capacity.overview.usedFraction
        freeableFraction: capacity.overview.freeableFraction
        tintTop: Theme.liquidTop[capacity.overview.health]
        tintBottom: Theme.liquidBottom[capacity.overview.health]
        label: capacity.overview.capacityLabel
    }
    Loader {
        active: capacity.models.menuBar.checkedText !== ""
        visible: active
        sourceComponent: Words {
            text: capacity.models.menuBar.checkedText
            font: Theme.caption
            color: Theme.text2
        }
    }
}
