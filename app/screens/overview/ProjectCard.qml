// One project: what it is, when it was last worked on, what it needs.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens

GlassCard {
    id: card

    required property int index
    required property string name
    required property string kind
    required property string activityText
    required property string requirements
    required property string requirementsHelp
    required property bool isFocused

    signal revealed

    width: 250
    Accessible.role: Accessible.ListItem
    Accessible.name: [name, kind, activityText, requirements].filter(part => part !== "").join(", ")
    Accessible.description: requirementsHelp
    Accessible.onPressAction: revealed()
    Keys.onReturnPressed: menu.popup(card)
    Keys.onMenuPressed: menu.popup(card)

    ColumnLayout {
        width: parent.width
        spacing: 5

        RowLayout {
            spacing: 8

            Words {
                Layout.fillWidth: true
                text: card.name
                font: Theme.headline
                elide: Text.ElideRight
                decorative: true
            }
            Badge {
                text: card.kind
                color: Theme.accent
                decorative: true
            }
        }
        Words {
            visible: card.activityText !== ""
            text: card.activityText
            font: Theme.callout
            color: Theme.text2
            decorative: true
        }
        Words {
            Layout.fillWidth: true
            text: card.requirements
            font: Theme.caption
            color: Theme.text2
            elide: Text.ElideRight
            maximumLineCount: 2
            wrapMode: Text.Wrap
            decorative: true

            HoverHandler { id: hover }
            HelpTip {
                text: card.requirementsHelp
                wanted: hover.hovered && text !== ""
            }
        }
    }
    FocusRing {
        shown: card.isFocused
        cornerRadius: Theme.cardRadius
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: menu.popup()
    }
    ContextMenu {
        id: menu

        MenuEntry {
            text: qsTr("Reveal in Finder")
            onTriggered: card.revealed()
        }
    }
}
