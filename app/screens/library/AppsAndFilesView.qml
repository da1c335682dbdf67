// Applications that nobody opens and files that take much room, for the user to act on by hand.
import QtQuick
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

ScreenPage {
    id: view

    required property ScreenModels models

    property int tab: 0
    readonly property bool showsApps: tab === 0
    readonly property FoundListModel found: showsApps ? models.appUsage : models.largeFiles

    // The map stands above the table where the page is high enough for both.
    readonly property bool hasRoomForMap: height >= Theme.mapPageHeight
    readonly property bool mapShown: hasRoomForMap && width >= Theme.mapPageWidth
                                     ? models.mapShownInRoom : models.mapShownInTightness

    readonly property int padding: 24
    readonly property int paddingAbove: 18

    title: qsTr("Apps & Files")
    tools: Component {
        IconButton {
            text: qsTr("Map")
            symbolName: "rectangle.3.group"
            help: qsTr("Show where the bytes are")
            enabled: view.found.count > 0
            checkable: true
            checked: view.mapShown && enabled
            onToggled: view.models.showMap(!view.mapShown)
        }
    }

    Loader {
        anchors.fill: parent
        active: !view.models.overview.hasReport
        sourceComponent: EmptyStateView {
            title: view.found.empty.title
            symbolName: view.found.empty.symbolName
            message: view.found.empty.message
            actionTitle: view.models.overview.isScanning ? "" : view.models.overview.scanTitle
            onActed: view.models.app.scan()
        }
    }
    Loader {
        anchors.fill: parent
        active: view.models.overview.hasReport
        focus: true
        sourceComponent: FocusScope {
            focus: true

            Column {
                id: head

                x: view.padding
                y: view.paddingAbove
                width: parent.width - 2 * x
                spacing: Theme.cardSpacing

                Item {
                    width: parent.width
                    height: Math.max(note.height, hand.height)

                    Symbol {
                        id: hand

                        name: "hand.raised.fill"
                        color: Theme.text2
                    }
                    Words {
                        id: note

                        x: hand.width + Theme.buttonSpacing
                        width: parent.width - x
                        text: view.showsApps ? qsTr("Tidewright never removes apps. To uninstall one, quit it and drag it to the Trash, or use its own uninstaller. Check the developer's instructions for apps that install helpers.") : qsTr("Files over 1 GB in your folders. Review them yourself; Tidewright doesn't clean personal files on its own.")
                        font: Theme.callout
                        color: Theme.text2
                        wrapMode: Text.Wrap
                    }
                }
                Item {
                    width: parent.width
                    height: picker.height

                    SegmentedPicker {
                        id: picker

                        label: qsTr("Show")
                        options: [qsTr("Unused Apps"), qsTr("Large Files")]
                        currentIndex: view.tab
                        onPicked: index => view.tab = index
                    }
                    Loader {
                        anchors.right: parent.right
                        anchors.verticalCenter: parent.verticalCenter
                        active: view.showsApps
                        sourceComponent: Row {
                            spacing: Theme.buttonSpacing

                            Words {
                                anchors.verticalCenter: parent.verticalCenter
                                text: toggle.text
                                font: Theme.callout
                                decorative: true

                                TapHandler {
                                    onTapped: toggle.ask()
                                }
                            }
                            Toggle {
                                id: toggle

                                text: qsTr("Show All Apps")
                                checked: view.models.appUsage.showAll
                                onAsked: on => view.models.appUsage.showAll = on
                            }
                        }
                    }
                }
            }
            Loader {
                y: head.y + head.height + Theme.cardSpacing
                width: parent.width
                height: parent.height - y
                focus: true
                sourceComponent: view.found.count > 0 ? rows : nothing
            }
        }
    }
    Component {
        id: rows

        TableWithMap {
            focus: true
            mapShown: view.mapShown
            hasRoom: view.hasRoomForMap
            margin: view.padding
            table: view.showsApps ? apps : files
            map: view.showsApps ? mapOfApps : mapOfFiles
        }
    }
    Component {
        id: apps

        FoundTable {
            focus: true
            found: view.models.appUsage
            name: qsTr("Unused Apps")
        }
    }
    Component {
        id: files

        FoundTable {
            focus: true
            found: view.models.largeFiles
            name: qsTr("Large Files")
        }
    }
    Component {
        id: mapOfApps

        FoundMap {
            focus: true
            found: view.models.appUsage
            name: qsTr("Unused Apps")
        }
    }
    Component {
        id: mapOfFiles

        FoundMap {
            focus: true
            found: view.models.largeFiles
            name: qsTr("Large Files")
        }
    }
    Component {
        id: nothing

        EmptyStateView {
            title: view.found.empty.title
            symbolName: view.found.empty.symbolName
            message: view.found.empty.message
        }
    }
}
