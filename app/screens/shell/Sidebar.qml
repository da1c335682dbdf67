// The places of the main window, with what can be freed in each.
import QtQuick
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

FocusScope {
    id: sidebar

    required property ScreenModels models
    readonly property SidebarModel rows: models.sidebar

    implicitWidth: Theme.sidebarWidth

    Rectangle {
        anchors.fill: parent
        color: Theme.sidebar
    }
    ListArea {
        id: list
        anchors { left: parent.left; top: parent.top; right: parent.right; bottom: about.top }
        anchors { leftMargin: 10; rightMargin: 10; topMargin: 18; bottomMargin: 8 }
        model: sidebar.rows
        currentIndex: sidebar.rows.currentRow
        keyNavigationEnabled: false // the keys open screens, and the current row follows
        focus: true
        activeFocusOnTab: true
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Sidebar")

        section.property: "section"
        section.delegate: Item {
            id: heading

            required property string section

            width: ListView.view ? ListView.view.width : 0
            height: section === "" ? 0 : 36

            Words {
                visible: heading.section !== ""
                anchors { left: parent.left; leftMargin: Theme.sidebarRowPadding; bottom: parent.bottom; bottomMargin: 6 }
                text: heading.section
                font: Theme.semibold(Theme.subheadline)
                color: Theme.text2
            }
        }
        delegate: SidebarRow {
            width: ListView.view ? ListView.view.width : 0
            isCurrent: index === sidebar.rows.currentRow
            isFocused: isCurrent && list.activeFocus
            onClicked: {
                list.forceActiveFocus(Qt.MouseFocusReason);
                sidebar.rows.open(index);
            }
        }

        Keys.onUpPressed: sidebar.rows.open(Math.max(0, sidebar.rows.currentRow - 1))
        Keys.onDownPressed: sidebar.rows.open(Math.min(list.count - 1, sidebar.rows.currentRow + 1))
    }
    IconButton {
        id: about
        anchors { left: parent.left; bottom: parent.bottom; margins: 10 }
        symbolName: "info.circle.fill"
        text: qsTr("About Tidewright")
        onClicked: sidebar.models.shell.showAbout()
    }
    IconButton {
        anchors { left: about.right; bottom: parent.bottom; leftMargin: 4; bottomMargin: 10 }
        symbolName: "gearshape"
        text: qsTr("Settings…")
        onClicked: sidebar.models.shell.openSettings()
    }
    Separator {
        anchors { top: parent.top; bottom: parent.bottom; right: parent.right }
    }
    MouseArea {
        id: edge

        property real grabbedAt: 0

        anchors { top: parent.top; bottom: parent.bottom; right: parent.right; rightMargin: -3 }
        width: 6
        cursorShape: Qt.SplitHCursor
        onPressed: mouse => edge.grabbedAt = mouse.x
        onPositionChanged: mouse => {
            const wished = sidebar.width + mouse.x - edge.grabbedAt;
            sidebar.width = Math.min(Theme.sidebarMaximumWidth, Math.max(Theme.sidebarMinimumWidth, wished));
        }
    }
}
