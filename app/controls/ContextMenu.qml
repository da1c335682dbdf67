import QtQuick
import QtQuick.Templates as T
import Tidewright.Controls

T.Menu {
    id: menu

    implicitWidth: {
        let widest = Theme.menuWidth
        for (let index = 0; index < count; ++index)
            widest = Math.max(widest, itemAt(index).implicitWidth)
        return widest + leftPadding + rightPadding
    }
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    margins: Theme.tipDistance
    padding: Theme.menuPadding
    overlap: 1

    delegate: MenuEntry {}
    contentItem: ListView {
        implicitHeight: contentHeight
        model: menu.contentModel
        interactive: contentHeight > height
        clip: interactive
        currentIndex: menu.currentIndex

        Accessible.role: Accessible.PopupMenu
        Accessible.name: menu.title
    }
    background: CardGround {
        topColor: Theme.raised
        bottomColor: Theme.raised
        radius: Theme.listRadius
    }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.crossFadeDuration }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.crossFadeDuration }
    }
}
