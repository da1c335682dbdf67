// Above the screen: its title and tools, the scan, and the way to the review.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

Item {
    id: toolbar

    required property ScreenModels models
    required property string title
    required property Component tools ///< of the screen; may be null
    readonly property bool isNarrow: width < 800
    readonly property bool isTight: isNarrow && toolsLoader.implicitWidth > smallTools
    readonly property int smallTools: 100

    implicitHeight: 52

    RowLayout {
        anchors { fill: parent; leftMargin: 24; rightMargin: 24 }
        spacing: 8

        Words {
            visible: !toolbar.isTight // the sidebar says it as well
            text: toolbar.title
            font: Theme.semibold(Theme.title3)
            Accessible.role: Accessible.Heading
        }
        Item {
            Layout.fillWidth: true
        }
        Loader {
            id: toolsLoader
            sourceComponent: toolbar.tools
            visible: status === Loader.Ready
            Layout.fillWidth: true
            Layout.minimumWidth: item ? item.Layout.minimumWidth : 0
            Layout.maximumWidth: item ? item.implicitWidth : 0
        }
        Loader {
            active: toolbar.models.overview.isScanning
            visible: active
            sourceComponent: ProgressLine {
                width: toolbar.isNarrow ? 48 : 84
                value: toolbar.models.overview.scanFraction
                label: toolbar.models.overview.scanMessage

                HoverHandler { id: hover }
                HelpTip {
                    text: toolbar.models.overview.scanMessage
                    wanted: hover.hovered
                }
            }
        }
        Loader {
            sourceComponent: toolbar.isTight ? smallScan : scan
        }
        PushButton {
            extent: "toolbar"
            kind: "prominent"
            symbolName: "sparkles"
            text: toolbar.models.overview.reviewTitle
            help: qsTr("Review everything selected before anything is cleaned")
            enabled: toolbar.models.overview.hasSelection
            onClicked: toolbar.models.app.reviewSelection()
        }
    }
    Component {
        id: scan
        PushButton {
            extent: "toolbar"
            symbolName: "arrow.clockwise"
            text: qsTr("Scan")
            enabled: !toolbar.models.overview.isScanning
            onClicked: toolbar.models.app.scan()
        }
    }
    Component {
        id: smallScan
        IconButton {
            symbolName: "arrow.clockwise"
            text: qsTr("Scan")
            enabled: !toolbar.models.overview.isScanning
            onClicked: toolbar.models.app.scan()
        }
    }
    Separator {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
    }
}
