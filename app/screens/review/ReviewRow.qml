// One item of the cleanup: what becomes of it, or has become of it.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens

Item {
    id: row

    required property string title
    required property string version
    required property string detail
    required property bool attention
    required property string sizeText
    required property string symbolName ///< empty while it is cleaned
    required property string tint
    required property string stateTitle

    readonly property var tints: ({
            secondary: Theme.text2,
            green: Theme.green,
            orange: Theme.orange,
            red: Theme.red
        })

    width: ListView.view ? ListView.view.width : 0
    implicitHeight: content.implicitHeight + 2 * Theme.tableRowPadding
    Accessible.role: Accessible.ListItem
    Accessible.name: [version === "" ? title : title + " " + version, stateTitle, sizeText, detail].filter(part => part !== "").join(", ")

    RowLayout {
        id: content
        anchors { left: parent.left; right: parent.right; leftMargin: 14; rightMargin: 14; verticalCenter: parent.verticalCenter }
        spacing: 12

        Item {
            Layout.preferredWidth: Theme.rowSymbolSize
            Layout.preferredHeight: Theme.rowSymbolSize

            Symbol {
                visible: row.symbolName !== ""
                name: row.symbolName === "" ? "circle" : row.symbolName
                color: row.tints[row.tint] ?? Theme.text2
            }
            Loader {
                anchors.centerIn: parent
                active: row.symbolName === ""
                sourceComponent: Spinner { running: true }
            }
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2

            RowLayout {
                Layout.fillWidth: true
                spacing: 5

                Words {
                    Layout.fillWidth: true
                    Layout.maximumWidth: Math.ceil(implicitWidth)
                    text: row.title
                    font: Theme.rowTitle
                    elide: Text.ElideRight
                    decorative: true
                }
                Words {
                    Layout.fillWidth: true
                    text: row.version
                    color: Theme.text2
                    elide: Text.ElideRight
                    decorative: true
                }
            }
            Words {
                Layout.fillWidth: true
                text: row.detail
                font: Theme.caption
                color: row.attention ? Theme.orange : Theme.text2
                elide: Text.ElideRight
                wrapMode: Text.Wrap
                maximumLineCount: 2
                decorative: true
            }
        }
        Words {
            text: row.sizeText
            decorative: true
        }
    }
}
