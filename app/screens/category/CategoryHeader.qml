// What a category is, and how much of it is selected, optional and kept.
import QtQuick
import Tidewright.Controls
import Tidewright.State

Item {
    id: header

    required property ItemListModel items

    readonly property int padding: 24
    readonly property int paddingAbove: 18
    readonly property int figureSpacing: 28
    readonly property int wordsMinimum: 200
    // Where the words would get too narrow, the figures stand below them.
    readonly property bool stacked: width - 2 * padding - figures.width - figureSpacing < wordsMinimum

    implicitHeight: (stacked ? figures.y + figures.height : Math.max(words.height, figures.height)
                               + paddingAbove) + paddingAbove

    Words {
        id: words

        x: header.padding
        y: header.paddingAbove + (header.stacked ? 0 : Math.max(0, (figures.height - height) / 2))
        width: header.width - 2 * header.padding
               - (header.stacked ? 0 : figures.width + header.figureSpacing)
        text: header.items.description
        font: Theme.callout
        color: Theme.text2
        wrapMode: Text.Wrap
    }
    Row {
        id: figures

        x: header.stacked ? header.padding : header.width - header.padding - width
        y: header.paddingAbove + (header.stacked ? words.height + 10 : 0)
        spacing: header.figureSpacing

        Figure {
            label: qsTr("Selected")
            size: header.items.selected.text
            color: Theme.green
        }
        Figure {
            label: qsTr("Optional")
            size: header.items.optional.text
            color: Theme.orange
        }
        Figure {
            label: qsTr("Kept")
            size: header.items.kept.text
            color: Theme.text2
        }
    }
}
