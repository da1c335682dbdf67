// What the panel shows, from top to bottom.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

FocusScope {
    id: face

    required property ScreenModels models
    readonly property MenuBarModel bar: models.menuBar

    signal leaving ///< for another window

    /// Puts the keyboard to the next step.
    function begin() {
        actions.begin();
    }

    implicitHeight: column.implicitHeight + 2 * Theme.cardPadding

    ColumnLayout {
        id: column
        anchors { fill: parent; margins: Theme.cardPadding }
        spacing: Theme.cardSpacing

        PanelHeader {
            Layout.fillWidth: true
            models: face.models
        }
        Loader {
            Layout.fillWidth: true
            active: face.models.overview.isDiskKnown
            visible: active
            sourceComponent: PanelCapacity { models: face.models }
        }
        Loader {
            active: face.bar.trashText !== ""
            visible: active
            sourceComponent: RowLayout {
                spacing: Theme.buttonSpacing

                Symbol { name: "trash" }
                Words {
                    text: face.bar.trashText
                    font: Theme.callout
                }
            }
        }
        Loader {
            Layout.fillWidth: true
            active: face.bar.insights.count > 0
            visible: active
            sourceComponent: PanelInsights {
                models: face.models
                onLeaving: face.leaving()
            }
        }
        Separator {
            Layout.fillWidth: true
        }
        PanelActions {
            id: actions
            Layout.fillWidth: true
            models: face.models
            onLeaving: face.leaving()
        }
        Separator {
            Layout.fillWidth: true
        }
        PanelFooter {
            Layout.fillWidth: true
            models: face.models
            onLeaving: face.leaving()
        }
    }
}
