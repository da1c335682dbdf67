// Everything that is said of the focused item.
import QtQuick
import Tidewright.Controls
import Tidewright.State

FocusScope {
    id: inspector

    required property ItemListModel items
    readonly property var parts: items.focused.sections

    readonly property int padding: 20
    readonly property int partSpacing: 18

    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Details")

    Loader {
        anchors.fill: parent
        focus: true
        sourceComponent: inspector.items.focused.isPresent ? details : nothing
    }

    Component {
        id: nothing

        Item {
            EmptyStateView {
                anchors.centerIn: parent
                width: parent.width - 2 * inspector.padding
                title: qsTr("No selection")
                symbolName: "cursorarrow.click"
                message: qsTr("Select an item to see what it is and why Tidewright made its decision.")
            }
        }
    }

    Component {
        id: details

        ScrollArea {
            id: area

            function reach(item: Item) {
                const top = item.mapToItem(column, 0, 0).y
                const bottom = top + item.height + 2 * inspector.padding
                contentY = Math.max(0, Math.min(Math.max(contentY, bottom - height), top))
            }

            contentWidth: width
            contentHeight: column.height + 2 * inspector.padding

            Connections {
                target: inspector.items
                function onFocusedRowChanged() { area.contentY = 0 }
            }

            Column {
                id: column

                x: inspector.padding
                y: inspector.padding
                width: area.width - 2 * inspector.padding
                spacing: inspector.partSpacing

                Column {
                    width: parent.width
                    spacing: 10

                    Column {
                        width: parent.width
                        spacing: 2

                        Words {
                            width: parent.width
                            text: inspector.items.focused.title
                            font: Theme.semibold(Theme.title2)
                            wrapMode: Text.Wrap
                            Accessible.role: Accessible.Heading
                        }
                        Loader {
                            active: inspector.items.focused.version !== ""
                            visible: active
                            sourceComponent: Words {
                                width: column.width
                                text: inspector.items.focused.version
                                font: Theme.callout
                                color: Theme.text2
                                wrapMode: Text.Wrap
                            }
                        }
                    }
                    Flow {
                        id: facts

                        width: parent.width
                        spacing: 8

                        SizeText {
                            id: size

                            size: inspector.items.focused.sizeText
                            font: Theme.bold(Theme.title)
                        }
                        Item {
                            width: badge.implicitWidth
                            height: size.height

                            DecisionBadge {
                                id: badge

                                anchors.verticalCenter: parent.verticalCenter
                                decision: inspector.items.focused.decision
                                text: inspector.items.focused.decisionTitle
                                symbolName: inspector.items.focused.decisionSymbol
                            }
                        }
                        Words {
                            height: size.height
                            verticalAlignment: Text.AlignVCenter
                            text: inspector.items.focused.riskTitle
                            font: Theme.caption
                            color: Theme.text2
                        }
                    }
                    Loader {
                        active: inspector.items.focused.inUse !== ""
                        visible: active
                        sourceComponent: InUseLabel {
                            width: column.width
                            text: inspector.items.focused.inUse
                        }
                    }
                }
                Repeater {
                    model: inspector.parts.length // parts are kept from item to item
                    delegate: DetailPart {
                        required property int index
                        readonly property var part: inspector.parts[index]

                        width: column.width
                        title: part?.title ?? ""
                        symbolName: part?.symbolName ?? ""
                        text: part?.text ?? ""
                        lines: part?.lines ?? []
                        onReached: item => area.reach(item)
                    }
                }
                PushButton {
                    text: qsTr("Reveal in Finder")
                    onClicked: inspector.items.reveal(inspector.items.focusedRow)
                    onActiveFocusChanged: {
                        if (activeFocus)
                            area.reach(this)
                    }
                }
            }
        }
    }
}
