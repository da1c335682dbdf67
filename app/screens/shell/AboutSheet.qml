// What this program is and who makes it.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens

Sheet {
    id: sheet

    title: qsTr("About Tidewright")
    width: 340
    height: 260
    dismissible: true
    onDismissed: close()

    ColumnLayout {
        anchors.centerIn: parent
        spacing: 8

        Symbol {
            Layout.alignment: Qt.AlignHCenter
            name: "sparkles"
            size: 44
            color: Theme.accent
        }
        Words {
            Layout.alignment: Qt.AlignHCenter
            text: "Tidewright"
            font: Theme.semibold(Theme.title)
        }
        Words {
            Layout.alignment: Qt.AlignHCenter
            text: qsTr("Version %1").arg(Qt.application.version)
            color: Theme.text2
        }
        Words {
            Layout.alignment: Qt.AlignHCenter
            text: qsTr("by VARNEL")
            font: Theme.semibold(Theme.body)
        }
        PushButton {
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: 10
            text: qsTr("Close")
            onClicked: sheet.close()
        }
    }
}
