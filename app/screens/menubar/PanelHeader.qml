// The disk at a glance.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

RowLayout {
    id: header

    required property ScreenModels models

    spacing: Theme.panelOrbSpacing

    DiskOrbView {
        Layout.preferredWidth: Theme.panelOrbSize
        Layout.preferredHeight: Theme.panelOrbSize
        usedFraction: header.models.overview.usedFraction
        health: header.models.menuBar.health
        label: header.models.overview.orbLabel
    }
    ColumnLayout {
        spacing: 0

        Words {
            Layout.fillWidth: true
            text: header.models.menuBar.availableText
            font: Theme.panelFigure
            elide: Text.ElideRight
        }
        Words {
            Layout.fillWidth: true
            text: header.models.menuBar.availableCaption
            font: Theme.caption
            color: Theme.healthColors[header.models.menuBar.health]
            elide: Text.ElideRight
        }
    }
}
