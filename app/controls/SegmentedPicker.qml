// One of a few, side by side. It asks for another by `picked`, and shows it when `currentIndex` has
// followed.
import QtQuick
import QtQuick.Templates as T
import Tidewright.Controls

T.Control {
    id: picker

    required property string label
    required property list<string> options
    required property int currentIndex

    signal picked(index: int)

    function ask(index) {
        if (enabled && index >= 0 && index < options.length && index !== currentIndex)
            picked(index)
    }

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Theme.toolbarButtonHeight
    padding: Theme.pickerMargin
    opacity: enabled ? 1 : Theme.disabledOpacity
    focusPolicy: Qt.TabFocus
    Keys.onLeftPressed: picker.ask(picker.currentIndex - 1)
    Keys.onRightPressed: picker.ask(picker.currentIndex + 1)

    Accessible.role: Accessible.Grouping
    Accessible.name: picker.label

    background: Rectangle {
        radius: Theme.buttonRadius
        color: Theme.track

        FocusRing { shown: picker.visualFocus }
    }

    contentItem: Item {
        implicitWidth: {
            const last = segments.count > 0 ? segments.itemAt(segments.count - 1) : null
            return last ? last.x + last.width : 0
        }

        CardGround {
            readonly property Item segment: segments.count > 0 ? segments.itemAt(picker.currentIndex) : null

            visible: segment !== null
            x: segment ? segment.x : 0
            width: segment ? segment.width : 0
            height: parent.height
            radius: Theme.buttonRadius - Theme.pickerMargin
            topColor: Theme.window
            shadowFar: "transparent"

            Behavior on x { SnappyMotion {} }
            Behavior on width { SnappyMotion {} }
        }
        Repeater {
            id: segments

            model: picker.options
            delegate: Item {
                id: segment

                required property int index
                required property string modelData
                readonly property bool isCurrent: index === picker.currentIndex
                readonly property Item former: index > 0 ? segments.itemAt(index - 1) : null

                x: former ? former.x + former.width : 0
                // As wide as in the heavier font, so that nothing moves when it is picked.
                width: Math.ceil(heavy.advanceWidth) + 2 * Theme.buttonPadding
                height: picker.availableHeight

                Accessible.role: Accessible.RadioButton
                Accessible.name: segment.modelData
                Accessible.checkable: true
                Accessible.checked: segment.isCurrent
                Accessible.onPressAction: picker.ask(segment.index)
                Accessible.onToggleAction: picker.ask(segment.index)

                TextMetrics {
                    id: heavy

                    text: segment.modelData
                    font: Theme.medium(Theme.callout)
                }
                Words {
                    x: Math.round((segment.width - width) / 2)
                    y: Math.round((segment.height - height) / 2)
                    text: segment.modelData
                    font: segment.isCurrent ? heavy.font : Theme.callout
                    color: segment.isCurrent || hover.hovered ? Theme.text : Theme.text2
                    decorative: true
                }
                HoverHandler { id: hover }
                TapHandler {
                    gesturePolicy: TapHandler.ReleaseWithinBounds
                    onTapped: picker.ask(segment.index)
                }
            }
        }
    }
}
