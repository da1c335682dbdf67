// The projects found, side by side.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

ColumnLayout {
    id: strip

    required property ScreenModels models

    spacing: 14

    SectionTitle {
        Layout.fillWidth: true
        title: qsTr("Projects")
        subtitle: qsTr("What they need is kept.")
    }
    ListArea {
        id: list
        objectName: "projects"
        Layout.fillWidth: true
        Layout.preferredHeight: 118
        orientation: ListView.Horizontal
        clip: false // cards go on to the edges of the screen
        displayMarginBeginning: Theme.windowPaddingAside
        displayMarginEnd: Theme.windowPaddingAside
        spacing: 12
        model: strip.models.projects
        activeFocusOnTab: true
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Projects")

        delegate: ProjectCard {
            height: ListView.view ? ListView.view.height - 14 : 0
            isFocused: ListView.isCurrentItem && list.activeFocus
            onRevealed: strip.models.projects.reveal(index)
        }
    }
}
