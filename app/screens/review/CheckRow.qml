// One check of the toolchains.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens

Item {
    id: row

    required property var modelData ///< a check with name, detail, passed and symbolName

    implicitHeight: content.implicitHeight + 2 * Theme.tableRowPadding
    Accessible.role: Accessible.ListItem
    Accessible.name: qsTr("%1: %2").arg(modelData.name).arg(modelData.detail)

    RowLayout {
        id: content
        anchors { left: parent.left; right: parent.right; leftMargin: 14; rightMargin: 14; verticalCenter: parent.verticalCenter }
        spacing: 12

        Symbol {
            name: row.modelData.symbolName
            color: row.modelData.passed ? Theme.green : Theme.red
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2

            Words {
                text: row.modelData.name
                font: Theme.rowTitle
                decorative: true
            }
            Words {
                Layout.fillWidth: true
                text: row.modelData.detail
                font: Theme.caption
                color: Theme.text2
                wrapMode: Text.Wrap
                decorative: true
            }
        }
    }
}
