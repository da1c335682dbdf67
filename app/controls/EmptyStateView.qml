// What stands where there is nothing to show.
import QtQuick
import Tidewright.Controls

Item {
    id: view

    required property string title
    required property string symbolName
    required property string message
    property string actionTitle: ""

    signal acted()

    implicitWidth: Theme.emptyStateWidth
    implicitHeight: column.implicitHeight

    Column {
        id: column

        width: Math.min(parent.width, Theme.emptyStateWidth)
        anchors.centerIn: parent
        spacing: Theme.emptyStateSpacing

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: view.symbolName
            size: Theme.emptySymbolSize
            color: Theme.text3
        }
        Words {
            width: parent.width
            visible: text !== ""
            decorative: !visible
            text: view.title
            font: Theme.semibold(Theme.title3)
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            Accessible.role: Accessible.Heading
        }
        Words {
            width: parent.width
            text: view.message
            font: Theme.callout
            color: Theme.text2
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
        Loader {
            anchors.horizontalCenter: parent.horizontalCenter
            active: view.actionTitle !== ""
            visible: active
            sourceComponent: PushButton {
                text: view.actionTitle
                onClicked: view.acted()
            }
        }
    }
}
