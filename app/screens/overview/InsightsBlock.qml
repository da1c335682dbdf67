// The few insights that matter most.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

ColumnLayout {
    id: block

    required property ScreenModels models

    spacing: 14

    RowLayout {
        SectionTitle {
            Layout.fillWidth: true
            title: qsTr("What needs attention")
            subtitle: qsTr("Situations Tidewright noticed on this Mac.")
        }
        Loader {
            Layout.alignment: Qt.AlignBottom
            active: block.models.topInsights.hasMore
            visible: active
            sourceComponent: PushButton {
                extent: "small"
                kind: "link"
                text: qsTr("See All")
                onClicked: block.models.app.destinationName = "insights"
            }
        }
    }
    CardGrid {
        Layout.fillWidth: true
        minimumWidth: 290
        maximumColumns: 2
        count: block.models.topInsights.count

        Repeater {
            model: block.models.topInsights

            InsightCard {
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.preferredWidth: 1
                isCompact: true
                onPerformed: block.models.topInsights.perform(index)
            }
        }
    }
}
