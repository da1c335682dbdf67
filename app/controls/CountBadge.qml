// A count that asks for attention.
import QtQuick
import Tidewright.Controls

Rectangle {
    id: badge

    required property string text
    property bool decorative: false

    implicitWidth: Math.max(implicitHeight, Math.ceil(words.implicitWidth) + 2 * Theme.badgePadding)
    implicitHeight: Theme.countBadgeHeight
    radius: height / 2
    color: Theme.accent

    Accessible.role: Accessible.StaticText
    Accessible.name: badge.text
    Accessible.ignored: badge.decorative

    Words {
        id: words

        anchors.centerIn: parent
        anchors.verticalCenterOffset: Theme.badgeTextOffset
        text: badge.text
        font: Theme.bold(Theme.caption)
        color: Theme.onAccent
        decorative: true
    }
}
