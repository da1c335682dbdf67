// One past cleanup.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens

Item {
    id: row

    required property int index
    required property string dateText
    required property string freedText
    required property string itemsText
    required property bool hasLog
    required property bool isFocused

    signal logAsked

    implicitHeight: 52
    Accessible.role: Accessible.ListItem
    Accessible.name: [dateText, freedText, itemsText].join(", ")

    Rectangle {
        anchors { fill: parent; margins: 2 }
        radius: Theme.listRadius
        color: row.isFocused ? Theme.sel : "transparent"
    }
    RowLayout {
        anchors { fill: parent; leftMargin: 14; rightMargin: 14 }
        spacing: 14

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2

            Words {
                text: row.dateText
                font: Theme.rowTitle
                decorative: true
            }
            Words {
                text: row.itemsText
                font: Theme.subheadline
                color: Theme.text2
                decorative: true
            }
        }
        Words {
            text: row.freedText
            font: Theme.semibold(Theme.body)
            color: Theme.green
            decorative: true
        }
        Loader {
            active: row.hasLog
            Layout.preferredWidth: Theme.toolbarButtonHeight
            sourceComponent: IconButton {
                symbolName: "doc.text.magnifyingglass"
                text: qsTr("Show audit log")
                onClicked: row.logAsked()
            }
        }
    }
}
