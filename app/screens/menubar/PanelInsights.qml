// The insights that matter most, each a way into the main window.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

ColumnLayout {
    id: insights

    required property ScreenModels models

    signal leaving

    function open(row) {
        leaving();
        models.shell.openMainWindow();
        models.menuBar.insights.perform(row);
    }

    spacing: Theme.cardSpacing / 2 // the rows have the other half

    Separator {
        Layout.fillWidth: true
    }
    ColumnLayout {
        Layout.fillWidth: true
        Layout.leftMargin: -Theme.sidebarRowPadding // words stand in line with all others
        Layout.rightMargin: -Theme.sidebarRowPadding
        Layout.bottomMargin: -Theme.cardSpacing / 2
        spacing: 0

        Repeater {
            model: insights.models.menuBar.insights

            PanelInsightRow {
                Layout.fillWidth: true
                onClicked: insights.open(index)
            }
        }
    }
}
