// One insight, with what can be done about it.
import QtQuick
import Tidewright.Controls

GlassCard {
    id: card

    required property int index
    required property string severity ///< "tip", "notice", "warning" or "critical"
    required property string symbolName
    required property string title
    required property string message
    required property string gainText
    required property string actionTitle
    property bool isCompact: false
    readonly property color severityColor: Theme.severityColors[severity]

    signal performed

    tint: severityColor
    Accessible.role: Accessible.Grouping
    Accessible.name: [title, message, gainText].filter(part => part !== "").join(", ")

    Item {
        width: parent.width
        height: parent.height
        implicitWidth: 300
        implicitHeight: words.height + 10 + foot.height

        Symbol {
            y: 1
            name: card.symbolName
            size: Theme.cardSymbolSize
            color: card.severityColor
        }
        Column {
            id: words
            anchors { left: parent.left; leftMargin: Theme.cardSymbolSize + 14; right: parent.right; top: parent.top }
            spacing: 3

            Words {
                width: parent.width
                text: card.title
                font: Theme.headline
                wrapMode: Text.Wrap
                decorative: true
            }
            Words {
                width: parent.width
                text: card.message
                font: Theme.callout
                color: Theme.text2
                wrapMode: Text.Wrap
                elide: Text.ElideRight
                maximumLineCount: card.isCompact ? 2 : 8
                lineHeight: 1.15
                decorative: true
            }
        }
        Item {
            id: foot
            anchors { left: words.left; right: parent.right; bottom: parent.bottom }
            height: Theme.smallButtonHeight

            Words {
                anchors.verticalCenter: parent.verticalCenter
                text: card.gainText
                font: Theme.semibold(Theme.body)
                color: card.severityColor
                decorative: true
            }
            Loader {
                anchors { right: parent.right; verticalCenter: parent.verticalCenter }
                active: card.actionTitle !== ""
                sourceComponent: PushButton {
                    extent: "small"
                    text: card.actionTitle
                    onClicked: card.performed()
                }
            }
        }
    }
}
