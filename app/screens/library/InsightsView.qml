// Every insight of the last scan.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

ScreenPage {
    id: view

    required property ScreenModels models

    title: qsTr("Insights")

    Loader {
        anchors.fill: parent
        active: !view.models.overview.hasReport
        sourceComponent: EmptyStateView {
            title: view.models.insights.empty.title
            symbolName: view.models.insights.empty.symbolName
            message: view.models.insights.empty.message
            actionTitle: view.models.overview.isScanning ? "" : view.models.overview.scanTitle
            onActed: view.models.app.scan()
        }
    }
    ScrollArea {
        id: area
        anchors.fill: parent
        visible: view.models.overview.hasReport
        contentHeight: cards.height + 2 * Theme.windowPaddingAbove
        focus: true

        Column {
            id: cards
            x: Math.max(Theme.windowPaddingAside, Math.round((area.width - width) / 2))
            y: Theme.windowPaddingAbove
            width: Math.min(area.width - 2 * Theme.windowPaddingAside, 900)
            spacing: Theme.cardSpacing

            Repeater {
                model: view.models.insights

                InsightCard {
                    width: cards.width
                    onPerformed: view.models.insights.perform(index)
                }
            }
        }
    }
}
