// The chart of past cleanups: a bar for each, by day. The pointer and the keyboard pick one out, of
// which a tip then tells.
import QtQuick
import Tidewright.Controls
import Tidewright.State

FocusScope {
    id: chart

    required property HistoryListModel history

    readonly property int shownRow: {
        if (hover.hovered)
            return history.rowAt(hover.point.position.x / plot.width,
                                 1 - (hover.point.position.y - plot.y) / plot.height)
        return activeFocus ? history.focusedRow : -1
    }
    readonly property Item shownBar: shownRow >= 0 && shownRow < bars.count ? bars.itemAt(shownRow) : null

    readonly property int labelSpacing: 8
    readonly property int lineHeight: Math.ceil(metrics.height)
    readonly property int barRadius: 4
    readonly property int leastHeight: 2 // so that each bar is seen
    readonly property int barSpacing: 1 // between those of one day
    // Of bars while a tip tells of another; it lets nothing of the grid through.
    readonly property color faintColor: Qt.tint(Theme.window, Qt.alpha(Theme.accent, 0.4))

    function widest(texts: list<string>): int {
        let width = 0
        for (const text of texts)
            width = Math.max(width, metrics.advanceWidth(text))
        return Math.ceil(width)
    }

    function moveTo(row: int) {
        if (bars.count > 0)
            history.focusedRow = Math.max(0, Math.min(row, bars.count - 1))
    }

    function pick(row: int) {
        moveTo(row)
        bars.itemAt(row).forceActiveFocus(Qt.MouseFocusReason)
    }

    implicitHeight: 200
    activeFocusOnTab: true
    onActiveFocusChanged: {
        if (activeFocus && history.focusedRow < 0)
            moveTo(0)
    }
    // Time goes from left to right, and the rows begin with the newest.
    Keys.onLeftPressed: moveTo(history.focusedRow + 1)
    Keys.onRightPressed: moveTo(history.focusedRow - 1)
    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_Home || event.key === Qt.Key_End
        if (event.accepted)
            moveTo(event.key === Qt.Key_Home ? bars.count - 1 : 0)
    }

    Accessible.role: Accessible.Chart
    Accessible.name: sizeTitle.text
    Accessible.focusable: true

    FontMetrics {
        id: metrics

        font: Theme.caption
    }
    Binding {
        target: chart.history
        property: "plotWidth"
        value: plot.width
        restoreMode: Binding.RestoreNone
    }
    Binding {
        target: chart.history
        property: "dateWidth"
        value: chart.widest(chart.history.sampleDates)
        restoreMode: Binding.RestoreNone
    }

    component Label: Words {
        font: Theme.caption
        color: Theme.text2
        decorative: true
    }

    Label {
        id: sizeTitle

        text: qsTr("Freed (GB)")
    }
    Label {
        id: dateTitle

        x: chart.width - width
        y: chart.height - height
        text: qsTr("Date")
    }
    Item {
        id: plot

        x: chart.widest(chart.history.sizeTicks.map(tick => tick.text)) + chart.labelSpacing
        y: 2 * chart.lineHeight
        width: chart.width - x
        height: dateTitle.y - chart.lineHeight - chart.labelSpacing - y

        Repeater {
            model: chart.history.sizeTicks

            Item {
                required property var modelData // a ChartTick

                y: Math.round(plot.height * (1 - modelData.place))
                width: plot.width

                Rectangle {
                    width: parent.width
                    height: 1
                    color: Theme.hair
                }
                Label {
                    x: -chart.labelSpacing - width
                    y: -Math.round(height / 2)
                    text: parent.modelData.text
                }
            }
        }
        Repeater {
            model: chart.history.dateTicks

            Label {
                required property var modelData // a ChartTick

                x: Math.round(Math.max(-plot.x, Math.min(plot.width * modelData.place - width / 2, plot.width - width)))
                y: plot.height + chart.labelSpacing
                text: modelData.text
            }
        }
        Repeater {
            id: bars

            model: chart.history

            Item {
                id: bar

                required property int index
                required property string dateText
                required property string freedText
                required property string itemsText
                required property double barLeft
                required property double barWidth
                required property double barBottom
                required property double barHeight

                readonly property bool isFocused: index === chart.history.focusedRow
                readonly property bool isFaint: chart.shownBar !== null && chart.shownBar !== bar
                readonly property real foot: Math.round(plot.height * (1 - barBottom))

                x: Math.round(plot.width * barLeft)
                y: Math.min(Math.round(plot.height * (1 - barBottom - barHeight)), foot - chart.leastHeight)
                width: Math.max(1, Math.round(plot.width * barWidth))
                height: foot - y
                focus: isFocused

                Accessible.role: Accessible.Graphic
                Accessible.name: [dateText, freedText, itemsText].join(", ")
                Accessible.focusable: true
                Accessible.selectable: true
                Accessible.selected: isFocused
                Accessible.onPressAction: chart.pick(index)

                Rectangle {
                    width: bar.width
                    height: bar.barBottom > 0 && bar.height > chart.leastHeight ? bar.height - chart.barSpacing : bar.height
                    radius: Math.min(chart.barRadius, width / 2, height / 2)
                    color: bar.isFaint ? chart.faintColor : Theme.accent
                }
                FocusRing {
                    shown: bar.activeFocus
                    cornerRadius: chart.barRadius
                }
            }
        }
    }
    Item { // above and below the plot, too
        x: plot.x
        width: plot.width
        height: chart.height

        HoverHandler {
            id: hover
        }
        TapHandler {
            onTapped: {
                if (chart.shownRow >= 0)
                    chart.pick(chart.shownRow)
            }
        }
    }
    Loader {
        active: chart.shownBar !== null
        sourceComponent: ChartTip {
            readonly property real barX: plot.x + chart.shownBar.x
            readonly property real beside: barX + chart.shownBar.width + Theme.tipDistance
            readonly property bool hasRoom: beside + width <= chart.width

            x: Math.round(hasRoom ? beside : barX - Theme.tipDistance - width)
            y: Math.round(Math.max(0, Math.min(plot.y + chart.shownBar.y, plot.y + plot.height - height)))
            dateText: chart.shownBar.dateText
            freedText: chart.shownBar.freedText
            itemsText: chart.shownBar.itemsText
        }
    }
}
