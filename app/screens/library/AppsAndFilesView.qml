// Applications that nobody opens and files that take much room, for the user to act on by hand.
import QtQuick
import QtQuick.Layouts
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

ScreenPage {
    id: view

    required property ScreenModels models
    property int tab: 0 ///< 0: applications, 1: files
    readonly property bool showsApps: tab === 0

    title: qsTr("Apps & Files")

    Loader {
        anchors.fill: parent
        active: !view.models.overview.hasReport
        sourceComponent: EmptyStateView {
            title: view.models.appUsage.empty.title
            symbolName: view.models.appUsage.empty.symbolName
            message: view.models.appUsage.empty.message
            actionTitle: view.models.overview.isScanning ? "" : view.models.overview.scanTitle
            onActed: view.models.app.scan()
        }
    }
    Loader {
        anchors { fill: parent; leftMargin: Theme.windowPaddingAside; rightMargin: Theme.windowPaddingAside; topMargin: Theme.windowPaddingAbove }
        active: view.models.overview.hasReport
        focus: true
        sourceComponent: ColumnLayout {
            spacing: 14

            RowLayout {
                Layout.fillWidth: true
                spacing: 10

                Symbol {
                    Layout.alignment: Qt.AlignTop
                    name: "hand.raised.fill"
                    color: Theme.text2
                }
                Words {
                    Layout.fillWidth: true
                    text: view.showsApps ? qsTr("Tidewright never removes apps. To uninstall one, quit it and drag it to the Trash, or use its own uninstaller. Check the developer's instructions for apps that install helpers.") : qsTr("Files over 1 GB in your folders. Review them yourself; Tidewright doesn't clean personal files on its own.")
                    font: Theme.callout
                    color: Theme.text2
                    wrapMode: Text.Wrap
                }
            }
            RowLayout {
                spacing: 14

                SegmentedPicker {
                    label: qsTr("Show")
                    options: [qsTr("Unused Apps"), qsTr("Large Files")]
                    currentIndex: view.tab
                    onPicked: index => view.tab = index
                }
                Loader {
                    active: view.showsApps
                    visible: active
                    sourceComponent: Toggle {
                        text: qsTr("Show All Apps")
                        checked: view.models.appUsage.showAll
                        onAsked: on => view.models.appUsage.showAll = on
                    }
                }
            }
            Loader {
                Layout.fillWidth: true
                Layout.fillHeight: true
                sourceComponent: view.showsApps ? apps : files
            }
        }
    }
    Component {
        id: apps
        FoundList {
            model: view.models.appUsage
            empty: view.models.appUsage.empty
            name: qsTr("Unused Apps")
            delegate: FoundRow {
                required property string lastUsedText
                detail: lastUsedText
                onRevealed: view.models.appUsage.reveal(index)
            }
        }
    }
    Component {
        id: files
        FoundList {
            model: view.models.largeFiles
            empty: view.models.largeFiles.empty
            name: qsTr("Large Files")
            delegate: FoundRow {
                required property string modifiedText
                detail: modifiedText
                onRevealed: view.models.largeFiles.reveal(index)
            }
        }
    }
}
