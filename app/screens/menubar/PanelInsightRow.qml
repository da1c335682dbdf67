// One insight in a line.
import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Tidewright.Controls
import Tidewright.Screens

T.AbstractButton {
    id: row

    required property int index
    required property string severity
    required property string symbolName
    required property string title
    required property string message

    function press(event) {
        if (!event.isAutoRepeat)
            clicked();
    }

    implicitHeight: Math.max(Theme.sidebarRowHeight, implicitContentHeight + topPadding + bottomPadding)
    horizontalPadding: Theme.sidebarRowPadding
    verticalPadding: Theme.tableRowPadding
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Keys.onReturnPressed: event => row.press(event)
    Keys.onEnterPressed: event => row.press(event)

    Accessible.role: Accessible.Button
    Accessible.name: row.title
    Accessible.description: row.message
    Accessible.onPressAction: row.clicked()

    background: Rectangle {
        radius: Theme.sidebarRowRadius
        color: row.down ? Theme.pressed : row.hovered ? Theme.hover : "transparent"

        FocusRing {
            shown: row.visualFocus
            cornerRadius: Theme.sidebarRowRadius
            distance: 0
        }
    }
    contentItem: RowLayout {
        spacing: Theme.buttonSpacing

        Symbol {
            name: row.symbolName
            color: Theme.severityColors[row.severity]
        }
        Words {
            Layout.fillWidth: true
            text: row.title
            wrapMode: Text.Wrap
            elide: Text.ElideRight
            maximumLineCount: 2
            decorative: true
        }
        Symbol {
            name: "chevron.right"
            size: Theme.badgeSymbolSize
            color: Theme.text3
        }
    }
}
