// What can be freed in one category; opens it.
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Tidewright.Controls
import Tidewright.Screens

T.Button {
    id: tile

    required property int index
    required property string title
    required property string symbolName
    required property string headline
    required property bool isTidy
    required property string caption
    required property string hint

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    padding: Theme.cardPadding
    hoverEnabled: true
    Accessible.name: [title, headline, caption].join(", ")
    Accessible.description: hint
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    background: GlassCard {
        hoverable: true
        pressed: tile.down

        FocusRing {
            shown: tile.visualFocus
            cornerRadius: Theme.cardRadius
        }
    }
    contentItem: ColumnLayout {
        spacing: 4

        StatusLine {
            Layout.fillWidth: true
            symbolName: tile.symbolName
            symbolColor: Theme.accent
            text: tile.title
            font: Theme.headline
            decorative: true
        }
        Words {
            Layout.fillWidth: true
            Layout.topMargin: 4
            text: tile.headline
            font: Theme.semibold(Theme.title)
            color: tile.isTidy ? Theme.text : Theme.green
            elide: Text.ElideRight
            decorative: true
        }
        Words {
            Layout.fillWidth: true
            text: tile.caption
            font: Theme.caption
            color: Theme.text2
            wrapMode: Text.Wrap
            decorative: true
        }
    }
}
