// A list of folders, to add to and to take from.
import QtQuick
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

FormSection {
    id: section

    required property PathListModel paths

    /// The keyboard stays where it was.
    function remove(row) {
        paths.remove(row)
        const next = rows.itemAt(Math.min(row, rows.count - 1))
        if (next)
            next.focusButton()
        else
            adder.forceActiveFocus(Qt.TabFocusReason)
    }

    Loader {
        active: section.paths.count === 0
        visible: active
        width: parent.width
        sourceComponent: FormRow {
            text: section.paths.empty.message
            color: Theme.text2
            isFirst: true
        }
    }
    Repeater {
        id: rows

        model: section.paths
        delegate: FormRow {
            id: row

            required property int index
            required property string path
            required property string removeText

            function focusButton() {
                remover.forceActiveFocus(Qt.TabFocusReason)
            }

            text: path
            symbolName: "folder"
            isFirst: index === 0
            elide: Text.ElideMiddle

            IconButton {
                id: remover

                implicitWidth: Theme.smallButtonHeight
                implicitHeight: Theme.smallButtonHeight
                symbolName: "minus.circle"
                text: row.removeText
                flat: true
                onClicked: {
                    if (visualFocus)
                        section.remove(row.index)
                    else
                        section.paths.remove(row.index)
                }
            }
        }
    }
    FormRow {
        PushButton {
            id: adder

            text: qsTr("Add Folder…")
            extent: "small"
            enabled: !section.paths.isPicking
            Accessible.description: section.title
            onClicked: section.paths.pick()
        }
    }
    FolderSheet {
        id: sheet

        paths: section.paths
    }
    Connections {
        target: section.paths
        function onEntryWanted() { sheet.open() }
    }
}
