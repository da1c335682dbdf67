import QtQuick
import Tidewright.Controls

Column {
    id: section

    required property string title
    property string subtitle: ""

    spacing: Theme.titleSpacing

    Words {
        width: Math.min(implicitWidth, section.width)
        text: section.title
        font: Theme.semibold(Theme.title3)
        elide: Text.ElideRight
        Accessible.role: Accessible.Heading
    }
    Loader {
        width: section.width
        active: section.subtitle !== ""
        visible: active
        sourceComponent: Words {
            text: section.subtitle
            font: Theme.callout
            color: Theme.text2
            elide: Text.ElideRight
        }
    }
}
