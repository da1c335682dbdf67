// What a scan found in one category: its items, and everything about the focused one beside them.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

ScreenPage {
    id: view

    required property ScreenModels models
    required property string category

    readonly property ItemListModel items: models.items(category)

    title: items.title
    tools: Component {
        RowLayout {
            spacing: view.toolSpacing
            Layout.minimumWidth: picker.implicitWidth + view.searchMinimum + mapToggle.implicitWidth
                                 + toggle.implicitWidth + 3 * spacing

            SegmentedPicker {
                id: picker

                label: qsTr("Show")
                options: [qsTr("All"), qsTr("Can Clean"), qsTr("Kept")]
                currentIndex: view.items.filter
                onPicked: index => view.items.filter = index
            }
            SearchField {
                id: search

                placeholder: qsTr("Filter items")
                text: view.items.search
                onTextEdited: view.items.search = text
                Keys.onDownPressed: content.forceActiveFocus(Qt.TabFocusReason)
                Layout.fillWidth: true
                Layout.minimumWidth: view.searchMinimum
                Layout.preferredWidth: view.searchMaximum
                Layout.maximumWidth: view.searchMaximum

                Connections {
                    target: view
                    function onFilterAsked() { search.forceActiveFocus(Qt.ShortcutFocusReason) }
                }
            }
            IconButton {
                id: mapToggle

                text: qsTr("Map")
                symbolName: "rectangle.3.group"
                help: qsTr("Show where the bytes are")
                enabled: view.hasItems
                checkable: true
                checked: view.mapShown
                onToggled: view.models.showMap(!view.mapShown)
            }
            IconButton {
                id: toggle

                text: qsTr("Inspector")
                symbolName: "sidebar.trailing"
                help: qsTr("Show or hide details")
                enabled: view.hasItems
                checkable: true
                checked: view.inspectorShown
                onToggled: view.toggleInspector()
            }
        }
    }

    readonly property int toolSpacing: 8
    readonly property int searchMinimum: 60
    readonly property int searchMaximum: 180
    readonly property int padding: 24
    readonly property int inspectorMinimum: 240
    readonly property int inspectorMaximum: 420
    readonly property int roomyWidth: 800

    readonly property bool hasItems: items.total > 0
    // Where it would make the table tight, the inspector comes only when asked for; where the table
    // would get too narrow, it lies over the table.
    readonly property bool roomy: width >= roomyWidth
    readonly property bool beside: width >= tableColumns.minimumWidth + inspectorMinimum
    readonly property bool inspectorShown: hasItems && (roomy ? shownInRoom : shownInTightness)
    readonly property real inspectorWidth: {
        const room = beside ? width - tableColumns.minimumWidth : width
        return Math.min(wantedInspectorWidth, room)
    }

    // The map stands above the table where the page is high enough for both.
    readonly property bool hasRoomForMap: height >= Theme.mapPageHeight
    readonly property bool mapShown: {
        const shown = hasRoomForMap && width >= Theme.mapPageWidth ? models.mapShownInRoom
                                                                   : models.mapShownInTightness
        return hasItems && shown
    }

    property bool shownInRoom: true
    property bool shownInTightness: false
    property real wantedInspectorWidth: 280
    property bool moving: false // not when it first comes
    property real shownShare: inspectorShown ? 1 : 0 // of the inspector's width

    signal filterAsked()

    function focusFilter() {
        filterAsked()
    }

    function toggleInspector() {
        moving = true
        if (inspectorShown && panel.activeFocus)
            content.forceActiveFocus(Qt.OtherFocusReason)
        if (roomy)
            shownInRoom = !shownInRoom
        else
            shownInTightness = !shownInTightness
    }

    function askInspectorWidth(width: real) {
        wantedInspectorWidth = Math.max(inspectorMinimum, Math.min(width, inspectorMaximum))
    }

    Behavior on shownShare {
        enabled: view.moving
        SpringMotion {}
    }

    Keys.onEscapePressed: event => {
        event.accepted = inspectorShown && !beside
        if (event.accepted)
            toggleInspector()
    }

    ItemColumns {
        id: tableColumns

        width: content.width
    }

    FocusScope {
        id: content

        width: view.width - (view.beside ? Math.round(view.inspectorWidth * view.shownShare) : 0)
        height: view.height
        focus: true

        Loader {
            anchors.fill: parent
            active: !view.models.overview.hasReport
            sourceComponent: Item {
                EmptyStateView {
                    anchors.centerIn: parent
                    title: view.items.empty.title
                    symbolName: view.items.empty.symbolName
                    message: view.items.empty.message
                    actionTitle: view.models.overview.isScanning ? "" : view.models.overview.scanTitle
                    onActed: view.models.app.scan()
                }
            }
        }
        Loader {
            anchors.fill: parent
            focus: true
            active: view.models.overview.hasReport
            sourceComponent: FocusScope {
                focus: true

                CategoryHeader {
                    id: header

                    width: parent.width
                    items: view.items
                }
                Loader {
                    y: header.height
                    width: parent.width
                    height: parent.height - y
                    focus: true
                    sourceComponent: view.hasItems ? rows : nothing
                }
            }
        }
    }
    Component {
        id: rows

        TableWithMap {
            focus: true
            table: itemTable
            map: itemMap
            mapShown: view.mapShown
            hasRoom: view.hasRoomForMap
            margin: view.padding
        }
    }
    Component {
        id: itemTable

        ItemTable {
            items: view.items
            columns: tableColumns
            focus: true
            onDetailsAsked: view.toggleInspector()
        }
    }
    Component {
        id: itemMap

        ItemMap {
            items: view.items
            focus: true
            onDetailsAsked: shown => {
                if (!shown || !view.inspectorShown)
                    view.toggleInspector()
            }
        }
    }
    Component {
        id: nothing

        Item {
            EmptyStateView {
                anchors.centerIn: parent
                title: view.items.empty.title
                symbolName: view.items.empty.symbolName
                message: view.items.empty.message
            }
        }
    }

    Loader {
        id: panel

        x: view.width - Math.round(width * view.shownShare)
        width: view.inspectorWidth
        height: view.height
        active: view.shownShare > 0
        sourceComponent: FocusScope {
            focus: true

            Rectangle {
                anchors.fill: parent
                visible: !view.beside
                color: Theme.window

                MouseArea { // nothing reaches what lies below
                    anchors.fill: parent
                    acceptedButtons: Qt.AllButtons
                    hoverEnabled: true
                    onWheel: {}
                }
                Rectangle {
                    anchors.right: parent.left
                    width: Theme.shadowFarBlur
                    height: parent.height
                    gradient: Gradient {
                        orientation: Gradient.Horizontal
                        GradientStop { position: 0; color: "transparent" }
                        GradientStop { position: 1; color: Theme.shadowFar }
                    }
                }
            }
            ItemInspector {
                anchors.fill: parent
                focus: true
                items: view.items
            }
            Separator {
                orientation: Qt.Vertical
                height: parent.height
            }
            MouseArea {
                property real held: 0 // the inspector's width and the pointer's place together

                x: -Math.floor(width / 2)
                width: 9
                height: parent.height
                cursorShape: Qt.SplitHCursor
                preventStealing: true
                onPressed: event => held = view.inspectorWidth + mapToItem(null, event.x, 0).x
                onPositionChanged: event => view.askInspectorWidth(held - mapToItem(null, event.x, 0).x)
            }
        }
    }
}
