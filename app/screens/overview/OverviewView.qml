// The state of everything at a glance: the disk, what to do next, what matters, where the space is.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

ScreenPage {
    id: view

    required property ScreenModels models
    readonly property OverviewModel overview: models.overview

    title: qsTr("Overview")

    ScrollArea {
        id: area
        anchors.fill: parent
        contentHeight: column.implicitHeight + 2 * Theme.windowPaddingAbove
        focus: true

        ColumnLayout {
            id: column
            x: Math.max(Theme.windowPaddingAside, Math.round((area.width - width) / 2))
            y: Theme.windowPaddingAbove
            width: Math.min(area.width - 2 * Theme.windowPaddingAside, 1200)
            spacing: Theme.blockSpacing

            Loader {
                Layout.fillWidth: true
                active: view.overview.asksForFullDiskAccess
                visible: active
                sourceComponent: FullDiskAccessBanner { models: view.models }
            }
            Hero {
                Layout.fillWidth: true
                models: view.models
            }
            Loader {
                Layout.fillWidth: true
                active: view.overview.isScanning
                visible: active
                sourceComponent: ScanProgressCard { models: view.models }
            }
            Loader {
                Layout.fillWidth: true
                active: view.overview.scanFailure !== ""
                visible: active
                sourceComponent: ScanFailureCard { models: view.models }
            }
            Loader {
                Layout.fillWidth: true
                active: !view.overview.hasReport && !view.overview.isScanning && view.overview.scanFailure === ""
                visible: active
                sourceComponent: WhatItDoesView {}
            }
            Loader {
                Layout.fillWidth: true
                active: view.overview.hasReport && view.models.topInsights.count > 0
                visible: active
                sourceComponent: InsightsBlock { models: view.models }
            }
            Loader {
                Layout.fillWidth: true
                active: view.overview.hasReport
                visible: active
                sourceComponent: BreakdownBlock { models: view.models }
            }
            Loader {
                Layout.fillWidth: true
                active: view.overview.hasReport && view.models.projects.count > 0
                visible: active
                sourceComponent: ProjectStrip { models: view.models }
            }
        }
    }
}
