// Past cleanups, newest first.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

ScreenPage {
    id: view

    required property ScreenModels models
    readonly property HistoryListModel history: models.history

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
        anchors { fill: parent; leftMargin: Theme.windowPaddingAside; rightMargin: Theme.windowPaddingAside; topMargin: Theme.windowPaddingAbove }
        active: view.history.count > 0
        focus: true
        sourceComponent: ColumnLayout {
            spacing: 14

            Figure {
                size: view.history.totalFreed.text
                label: view.history.cleanups
                color: Theme.green
                loud: true
            }
            ListArea {
                id: list
                Layout.fillWidth: true
                Layout.fillHeight: true
                focus: true
                activeFocusOnTab: true
                model: view.history
                spacing: 8
                Accessible.role: Accessible.List
                Accessible.name: view.title
                delegate: HistoryRow {
                    width: ListView.view ? ListView.view.width : 0
                    isFocused: ListView.isCurrentItem && list.activeFocus
                    onLogAsked: view.history.revealLog(index)
                }
            }
        }
    }
}
