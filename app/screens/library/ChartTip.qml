// What a bar of the chart stands for; readers hear it from the bar.
import QtQuick
import Tidewright.Controls

CardGround {
    id: tip

    required property string dateText
    required property string freedText
    required property string itemsText

    readonly property int lineSpacing: 2

    width: lines.width + 2 * Theme.tipPadding
    height: lines.height + Theme.tipPadding + Theme.tipPadding / 2
    topColor: Theme.raised
    radius: Theme.buttonRadius

    Column {
        id: lines

        anchors.centerIn: parent
        spacing: tip.lineSpacing

        Words {
            text: tip.freedText
            font: Theme.semibold(Theme.body)
            decorative: true
        }
        Words {
            text: tip.dateText
            font: Theme.subheadline
            color: Theme.text2
            decorative: true
        }
        Words {
            text: tip.itemsText
            font: Theme.subheadline
            color: Theme.text2
            decorative: true
        }
    }
}
