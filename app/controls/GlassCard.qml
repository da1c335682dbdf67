// A card around its content.
import QtQuick
import QtQuick.Templates as T
import Tidewright.Controls

T.Pane {
    id: card

    property color tint: "transparent"
    property bool hoverable: false
    property bool pressed: false
    property bool hasShadow: true
    property real radius: Theme.cardRadius

    readonly property bool isTinted: tint.a > 0

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    padding: Theme.cardPadding
    hoverEnabled: hoverable

    background: CardGround {
        topColor: card.isTinted ? Theme.cardTop(card.tint) : Theme.surface
        bottomColor: card.isTinted ? Theme.cardBottom(card.tint) : Theme.surface
        radius: card.radius
        hasShadow: card.hasShadow

        Rectangle {
            anchors.fill: parent
            visible: card.pressed || (card.hoverable && card.hovered)
            radius: card.radius
            color: card.pressed ? Theme.pressed : Theme.hoverLight
        }
    }
}
