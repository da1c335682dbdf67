// What the cleanup has brought, whether the toolchains are whole, and what was not cleaned.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

FocusScope {
    id: view

    required property ScreenModels models

    focus: true
    readonly property SessionListModel session: models.session

    ColumnLayout {
        anchors { fill: parent; margins: 24 }
        spacing: 8

        Symbol {
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: 10
            name: view.session.results.symbolName
            size: 44
            color: view.session.results.isComplete ? Theme.green : Theme.orange
        }
        Words {
            Layout.alignment: Qt.AlignHCenter
            text: view.session.results.headline
            font: Theme.resultFigure
            Accessible.role: Accessible.Heading
        }
        Words {
            Layout.fillWidth: true
            Layout.leftMargin: 40
            Layout.rightMargin: 40
            Layout.bottomMargin: 10
            horizontalAlignment: Text.AlignHCenter
            text: view.session.results.subtitle
            color: Theme.text2
            wrapMode: Text.Wrap
            lineHeight: 1.15
        }
        InsetList {
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: view.session.results.checks.length > 0 || view.session.count > 0
            name: qsTr("Results")
            model: view.session
            header: Column {
                width: ListView.view ? ListView.view.width : 0

                InsetHeading {
                    visible: view.session.results.checks.length > 0
                    text: qsTr("Toolchain check")
                }
                Repeater {
                    model: view.session.results.checks
                    delegate: CheckRow {
                        width: parent ? parent.width : 0
                    }
                }
                InsetHeading {
                    visible: view.session.count > 0
                    text: qsTr("Not cleaned")
                }
            }
            delegate: ReviewRow {}
        }
        Item {
            Layout.fillHeight: true
            visible: view.session.results.checks.length === 0 && view.session.count === 0
        }
        RowLayout {
            Layout.topMargin: 6
            spacing: 10

            Loader {
                active: view.session.results.hasLog
                visible: active
                sourceComponent: PushButton {
                    extent: "toolbar"
                    text: qsTr("Show Audit Log")
                    onClicked: view.session.showAuditLog()
                }
            }
            Item { Layout.fillWidth: true }
            PushButton {
                extent: "toolbar"
                kind: "prominent"
                text: qsTr("Done")
                focus: true
                isDefault: true
                onClicked: view.models.app.closeSession()
            }
        }
    }
}
