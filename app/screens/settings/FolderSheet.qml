// Asks for a folder where the desktop has no dialog for it: its path is typed, with folders to choose
// from below.
import QtQuick
import QtQuick.Templates as T
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

Sheet {
    id: sheet

    required property PathListModel paths
    readonly property FolderEntry entry: paths.entry

    function add() {
        if (paths.addEntry())
            close()
    }
    function take(suggestion) {
        entry.text = suggestion + "/"
        field.forceActiveFocus(Qt.OtherFocusReason)
    }

    title: qsTr("Add Folder")
    width: 420
    height: form.implicitHeight + 2 * Theme.windowPaddingAbove
    onOpened: field.forceActiveFocus(Qt.OtherFocusReason)

    Column {
        id: form

        anchors { left: parent.left; right: parent.right; top: parent.top; margins: Theme.windowPaddingAbove }
        spacing: 12

        Words {
            text: sheet.title
            font: Theme.semibold(Theme.title2)
            Accessible.role: Accessible.Heading
        }
        T.TextField {
            id: field

            width: parent.width
            height: Theme.toolbarButtonHeight
            leftPadding: Theme.buttonPadding
            rightPadding: Theme.buttonPadding
            verticalAlignment: Text.AlignVCenter
            font: Theme.body
            color: Theme.text
            selectionColor: Theme.accent
            selectedTextColor: Theme.onAccent
            selectByMouse: true
            text: sheet.entry.text
            focus: true
            onTextEdited: sheet.entry.text = text
            Keys.onDownPressed: suggestions.currentIndex = Math.min(suggestions.currentIndex + 1, suggestions.count - 1)
            Keys.onUpPressed: suggestions.currentIndex = Math.max(suggestions.currentIndex - 1, -1)
            onAccepted: {
                if (suggestions.currentIndex >= 0)
                    sheet.take(sheet.entry.suggestions[suggestions.currentIndex])
                else
                    sheet.add()
            }

            Accessible.role: Accessible.EditableText
            Accessible.name: qsTr("Path of the folder")

            background: Item {
                Rectangle {
                    anchors.fill: parent
                    radius: Theme.buttonRadius
                    color: Theme.surfaceTop
                    border.width: 1
                    border.color: Theme.hair
                }
                FocusRing { shown: field.activeFocus }
            }
        }
        Item {
            width: parent.width
            height: 6 * Theme.sidebarRowHeight // as many as are ever suggested

            ListView {
                id: suggestions

                anchors.fill: parent
                interactive: false
                keyNavigationEnabled: false
                currentIndex: -1
                model: sheet.entry.suggestions
                onModelChanged: currentIndex = -1

                Accessible.role: Accessible.List
                Accessible.name: qsTr("Folders")

                delegate: T.ItemDelegate {
                    id: suggestion

                    required property int index
                    required property string modelData

                    width: ListView.view ? ListView.view.width : 0
                    height: Theme.sidebarRowHeight
                    leftPadding: Theme.sidebarRowPadding
                    rightPadding: Theme.sidebarRowPadding
                    hoverEnabled: true
                    focusPolicy: Qt.NoFocus
                    onClicked: sheet.take(modelData)

                    Accessible.role: Accessible.ListItem
                    Accessible.name: suggestion.modelData
                    Accessible.onPressAction: suggestion.clicked()

                    background: Rectangle {
                        radius: Theme.sidebarRowRadius
                        color: suggestion.ListView.isCurrentItem ? Theme.sel : suggestion.hovered ? Theme.hover : "transparent"
                    }
                    contentItem: StatusLine {
                        symbolName: "folder"
                        text: suggestion.modelData
                        font: Theme.body
                        symbolColor: Theme.text2
                        decorative: true
                    }
                }
            }
            Loader {
                active: sheet.entry.problem !== ""
                x: Theme.sidebarRowPadding
                y: 7
                width: parent.width - 2 * x
                sourceComponent: Words {
                    text: sheet.entry.problem
                    color: Theme.text2
                    wrapMode: Text.Wrap
                }
            }
        }
        Row {
            anchors.right: parent.right
            spacing: Theme.buttonSpacing

            PushButton {
                text: qsTr("Cancel")
                onClicked: sheet.close()
            }
            PushButton {
                text: qsTr("Add")
                kind: "prominent"
                isDefault: true
                enabled: sheet.entry.isFolder
                onClicked: sheet.add()
            }
        }
    }
}
