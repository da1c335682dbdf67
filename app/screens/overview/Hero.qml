// The orb, and beside it the disk in numbers with the next step.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

RowLayout {
    id: hero

    required property ScreenModels models
    readonly property OverviewModel overview: models.overview
    readonly property color healthColor: Theme.healthColors[overview.health]

    spacing: Theme.orbSpacing

    DiskOrbView {
        Layout.preferredWidth: Theme.orbSize
        Layout.preferredHeight: Theme.orbSize
        Layout.alignment: Qt.AlignTop
        Layout.topMargin: 16
        usedFraction: hero.overview.usedFraction
        health: hero.overview.health
        label: hero.overview.orbLabel
    }
    ColumnLayout {
        Layout.fillWidth: true
        Layout.alignment: Qt.AlignVCenter
        spacing: 0

        StatusLine {
            symbolName: hero.overview.healthSymbol
            text: hero.overview.healthTitle
            color: hero.healthColor
            font: Theme.semibold(Theme.subheadline)
        }
        Loader {
            Layout.fillWidth: true
            Layout.topMargin: 2
            active: hero.overview.isDiskKnown
            visible: active
            sourceComponent: ColumnLayout {
                spacing: 0

                Words {
                    Layout.leftMargin: -2 // the figure's own bearing
                    text: hero.overview.availableText
                    font: Theme.bigFigure
                }
                Words {
                    text: hero.overview.totalText
                    font: Theme.title
                    color: Theme.text2
                }
                CapacityBar {
                    Layout.fillWidth: true
                    Layout.topMargin: 16
                    usedFraction: hero.overview.usedFraction
                    freeableFraction: hero.overview.freeableFraction
                    tintTop: Theme.liquidTop[hero.overview.health]
                    tintBottom: Theme.liquidBottom[hero.overview.health]
                    label: hero.overview.capacityLabel
                }
            }
        }
        Loader {
            Layout.fillWidth: true
            Layout.topMargin: 14
            active: hero.overview.hasReport
            visible: active
            sourceComponent: RowLayout {
                spacing: 36

                Figure {
                    label: qsTr("Selected to free")
                    size: hero.overview.selected.text
                    color: Theme.green
                }
                Figure {
                    label: qsTr("More if you opt in")
                    size: hero.overview.optional.text
                    color: Theme.orange
                }
                Loader {
                    active: hero.overview.hasFreed
                    visible: active
                    sourceComponent: Figure {
                        label: qsTr("Freed so far")
                        size: hero.overview.freed.text
                        color: Theme.accent
                    }
                }
                Item { Layout.fillWidth: true }
            }
        }
        RowLayout {
            Layout.topMargin: 18
            spacing: 8

            Loader {
                active: hero.overview.hasReport && hero.overview.hasSelection
                visible: active
                sourceComponent: PushButton {
                    extent: "large"
                    kind: "prominent"
                    symbolName: "sparkles"
                    text: hero.overview.reviewTitle
                    onClicked: hero.models.app.reviewSelection()
                }
            }
            PushButton {
                extent: "large"
                kind: hero.overview.hasReport && hero.overview.hasSelection ? "plain" : "prominent"
                symbolName: "arrow.clockwise"
                text: hero.overview.scanTitle
                enabled: !hero.overview.isScanning
                onClicked: hero.models.app.scan()
            }
        }
    }
}
