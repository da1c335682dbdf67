// Rows of a form in one card, with a title above and words that explain them below.
import QtQuick
import Tidewright.Controls

Column {
    id: section

    property string title: ""
    property string footer: ""
    property string problem: "" // a sentence that stands below the rows, in the card
    default property alias rows: body.data

    spacing: 8

    Accessible.role: Accessible.Grouping
    Accessible.name: section.title
    Accessible.ignored: section.title === ""

    Loader {
        active: section.title !== ""
        visible: active
        x: Theme.formPadding
        sourceComponent: Words {
            text: section.title
            font: Theme.headline
            Accessible.role: Accessible.Heading
        }
    }
    Item {
        width: section.width
        height: card.height

        CardGround {
            anchors.fill: parent
            radius: Theme.listRadius
            shadowFar: "transparent"
        }
        Column {
            id: card

            width: parent.width

            Column {
                id: body

                width: parent.width
            }
            Loader {
                active: section.problem !== ""
                visible: active
                width: parent.width
                sourceComponent: Words {
                    leftPadding: Theme.formPadding
                    rightPadding: Theme.formPadding
                    bottomPadding: Theme.formPadding - 2
                    text: section.problem
                    font: Theme.callout
                    color: Theme.red
                    wrapMode: Text.Wrap
                    Accessible.role: Accessible.AlertMessage
                }
            }
        }
    }
    Loader {
        active: section.footer !== ""
        visible: active
        x: Theme.formPadding
        width: section.width - x
        sourceComponent: Words {
            text: section.footer
            font: Theme.subheadline
            color: Theme.text2
            wrapMode: Text.Wrap
        }
    }
}
