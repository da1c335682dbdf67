// Past cleanups: how much they have freed in all, their chart, and a row each.
import QtQuick
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

ScreenPage {
    id: view

    required property ScreenModels models
    readonly property HistoryListModel history: models.history

    readonly property int padding: 24
    readonly property int paddingAbove: 18

    title: qsTr("History")

    Loader {
        anchors.fill: parent
        active: view.history.count === 0
        sourceComponent: EmptyStateView {
            title: view.history.empty.title
            symbolName: view.history.empty.symbolName
            message: view.history.empty.message
        }
    }
    Loader {
        anchors.fill: parent
        active: view.history.count > 0
        focus: true
        sourceComponent: FocusScope {
            id: content

            function openMenu(x: real, y: real) {
                const row = rowList.currentItem as HistoryRow
                if (row && row.hasLog)
                    menu.popup(rowList.currentItem, x, y)
            }

            focus: true

            Row {
                id: head

                x: view.padding
                y: view.paddingAbove
                spacing: Theme.buttonSpacing

                Accessible.role: Accessible.StaticText
                Accessible.name: total.text + " " + cleanups.text

                SizeText {
                    id: total

                    size: view.history.totalFreed.text
                    font: Theme.resultFigure
                    decorative: true
                }
                Words {
                    id: cleanups

                    anchors.baseline: total.baseline
                    text: view.history.cleanups
                    font: Theme.title3
                    color: Theme.text2
                    decorative: true
                }
            }
            Loader {
                id: chart

                readonly property int shownRow: item ? (item as FreedChart).shownRow : -1

                x: view.padding
                y: head.y + head.height + Theme.cardSpacing
                z: 1 // its tip lies over the rows
                width: parent.width - 2 * x
                active: view.history.hasChart
                sourceComponent: FreedChart {
                    width: chart.width
                    history: view.history
                }
            }
            Separator {
                y: rowList.y - 1
                width: parent.width
            }
            RowList {
                id: rowList

                y: chart.y + chart.height + (view.history.hasChart ? Theme.cardSpacing : 0)
                width: parent.width
                height: parent.height - y
                focus: true
                rows: view.history
                name: view.title
                menuX: view.padding
                topMargin: 5
                bottomMargin: 10
                onActivated: view.history.revealLog(view.history.focusedRow)
                onMenuAsked: (x, y) => content.openMenu(x, y)

                delegate: HistoryRow {
                    width: ListView.view.width
                    focused: index === view.history.focusedRow
                    marked: index === chart.shownRow
                    showsRing: activeFocus && rowList.keyboard
                    onPressed: rowList.focusByPointer(index)
                    onMenuAsked: (x, y) => content.openMenu(x, y)
                    onLogAsked: view.history.revealLog(index)
                }
            }
            ContextMenu {
                id: menu

                onAboutToHide: rowList.forceActiveFocus(Qt.PopupFocusReason)

                MenuEntry {
                    text: qsTr("Show audit log")
                    onTriggered: view.history.revealLog(view.history.focusedRow)
                }
            }
        }
    }
}
