// A word on a capsule of its colour.
import QtQuick
import Tidewright.Controls

Item {
    id: badge

    required property string text
    property string symbolName: ""
    property color color: Theme.text2
    property bool decorative: false

    implicitWidth: Math.ceil(row.implicitWidth) + 2 * Theme.badgePadding
    implicitHeight: 2 * Theme.badgeRadius

    Accessible.role: Accessible.StaticText
    Accessible.name: badge.text
    Accessible.ignored: badge.decorative

    Rectangle {
        anchors.fill: parent
        radius: Theme.badgeRadius
        color: Theme.badgeGround(badge.color)
    }
    Row {
        id: row

        anchors.centerIn: parent
        spacing: Theme.badgeSpacing

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            visible: badge.symbolName !== ""
            name: badge.symbolName
            size: Theme.badgeSymbolSize
            color: badge.color
        }
        Words {
            anchors.verticalCenter: parent.verticalCenter
            anchors.verticalCenterOffset: Theme.badgeTextOffset
            text: badge.text
            font: Theme.medium(Theme.caption)
            color: badge.color
            decorative: true
        }
    }
}
