// What would be cleaned, and how; nothing has been touched yet.
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
            text: qsTr("Review cleanup")
            font: Theme.semibold(Theme.title)
            Accessible.role: Accessible.Heading
        }
        Loader {
            Layout.fillWidth: true
            active: face.session.attentionText !== ""
            visible: active
            sourceComponent: StatusLine {
                symbolName: "exclamationmark.triangle.fill"
                text: face.session.attentionText
                font: Theme.callout
                color: Theme.orange
            }
        }
        RowLayout {
            spacing: 36

            Figure {
                size: face.session.totalSize.text
                label: qsTr("to free")
                color: Theme.green
                loud: true
            }
            Loader {
                active: face.session.permanent.bytes > 0
                visible: active
                sourceComponent: Figure {
                    size: face.session.permanent.text
                    label: qsTr("deleted or cleaned by tools")
                    color: Theme.text
                    loud: true
                }
            }
            Loader {
                active: face.session.toTrash.bytes > 0
                visible: active
                sourceComponent: Figure {
                    size: face.session.toTrash.text
                    label: qsTr("moved to Trash")
                    color: Theme.text2
                    loud: true
                }
            }
        }
        InsetList {
            Layout.fillWidth: true
            Layout.fillHeight: true
            model: face.session
            name: qsTr("What is cleaned")
            section.property: "methodGroup"
            section.delegate: InsetHeading {
                required property string section
                text: section
            }
            delegate: ReviewRow {}
        }
        RowLayout {
            spacing: 10

            Words {
                Layout.fillWidth: true
                text: qsTr("Every path is checked against Tidewright's safety rules again before it's touched.")
                font: Theme.caption
                color: Theme.text2
                wrapMode: Text.Wrap
            }
            PushButton {
                extent: "toolbar"
                text: qsTr("Cancel")
                onClicked: face.models.app.closeSession()
            }
            PushButton {
                extent: "toolbar"
                kind: "prominent"
                text: face.session.cleanTitle
                focus: true
                isDefault: true
                onClicked: face.models.app.startCleaning()
            }
        }
    }
}
