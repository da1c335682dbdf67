// An application or a file, with when it was last used and its size.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens

Item {
    id: row

    required property int index
    required property string name
    required property string path
    required property string sizeText
    property string detail

    signal revealed

    width: ListView.view ? ListView.view.width : 0
    implicitHeight: 46
    Accessible.role: Accessible.ListItem
    Accessible.name: [name, detail, sizeText].join(", ")
    Accessible.description: path
    Accessible.onPressAction: revealed()
    Keys.onReturnPressed: revealed()

    Rectangle {
        anchors { fill: parent; margins: 1 }
        radius: Theme.buttonRadius
        color: row.ListView.isCurrentItem && row.ListView.view.activeFocus ? Theme.sel : hover.hovered ? Theme.hover : "transparent"
    }
    RowLayout {
        anchors { fill: parent; leftMargin: 12; rightMargin: 12 }
        spacing: 14

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 1

            Words {
                Layout.fillWidth: true
                text: row.name
                font: Theme.rowTitle
                elide: Text.ElideRight
                decorative: true
            }
            Words {
                Layout.fillWidth: true
                text: row.path
                font: Theme.caption
                color: Theme.text2
                elide: Text.ElideMiddle
                decorative: true
            }
        }
        Words {
            Layout.preferredWidth: 180
            text: row.detail
            color: Theme.text2
            elide: Text.ElideRight
            decorative: true
        }
        Words {
            Layout.preferredWidth: 90
            horizontalAlignment: Text.AlignRight
            text: row.sizeText
            decorative: true
        }
    }
    HoverHandler { id: hover }
    TapHandler {
        onTapped: row.ListView.view.currentIndex = row.index
        onDoubleTapped: row.revealed()
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: menu.popup()
    }
    ContextMenu {
        id: menu

        MenuEntry {
            text: qsTr("Reveal in Finder")
            onTriggered: row.revealed()
        }
    }
}
