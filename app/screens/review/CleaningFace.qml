// How far the cleanup is, item by item.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

FocusScope {
    id: face

    required property ScreenModels models

    focus: true
    readonly property SessionListModel session: models.session

    ColumnLayout {
        anchors { fill: parent; margins: 24 }
        spacing: 14

        Words {
            text: qsTr("Cleaning")
            font: Theme.semibold(Theme.title)
            Accessible.role: Accessible.Heading
        }
        ProgressLine {
            Layout.fillWidth: true
            value: face.session.progress
            label: face.session.progressText
        }
        Words {
            text: face.session.progressText
            font: Theme.callout
            color: Theme.text2
        }
        InsetList {
            Layout.fillWidth: true
            Layout.fillHeight: true
            model: face.session
            name: qsTr("What is cleaned")
            delegate: ReviewRow {}
        }
        PushButton {
            Layout.alignment: Qt.AlignRight
            extent: "toolbar"
            text: qsTr("Stop")
            focus: true
            onClicked: face.models.app.stopCleaning()
        }
    }
}
