// The window of the settings: a form in each tab, as high as the form.
import QtQuick
import QtQuick.Window
import QtQuick.Templates as T
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

Window {
    id: window

    required property ScreenModels models
    property int tab: 0
    readonly property int tabCount: 3
    readonly property real fittingHeight: {
        const form = page.item ? page.item.implicitHeight : 0
        return Math.min(Math.ceil(area.y + form + 2 * Theme.windowPaddingAbove), Theme.settingsHeight)
    }

    function turn(to) {
        tab = Math.max(0, Math.min(to, tabCount - 1))
    }

    // What had the keyboard goes with its form.
    onTabChanged: {
        if (!strip.activeFocus)
            strip.forceActiveFocus(Qt.OtherFocusReason)
    }

    title: qsTr("Settings")
    width: Theme.settingsWidth
    height: fittingHeight
    minimumWidth: Theme.settingsWidth
    maximumWidth: Theme.settingsWidth
    minimumHeight: Theme.settingsMinimumHeight
    color: Theme.window

    // The way back from the system's settings leads through here.
    onActiveChanged: {
        if (active)
            models.settings.checkSystem()
    }

    Shortcut {
        sequence: "Ctrl+W"
        onActivated: window.close()
    }
    Shortcut {
        sequence: "Ctrl+Tab"
        onActivated: window.tab = (window.tab + 1) % tabCount
    }
    Shortcut {
        sequence: "Ctrl+Shift+Tab"
        onActivated: window.tab = (window.tab + tabCount - 1) % tabCount
    }

    FocusScope {
        anchors.fill: parent
        focus: true
        Keys.onEscapePressed: window.close()

        Rectangle {
            width: parent.width
            height: area.y
            color: Theme.sidebar

            Separator {
                anchors.bottom: parent.bottom
                width: parent.width
            }
        }
        T.TabBar {
            id: strip

            anchors { top: parent.top; topMargin: 10; horizontalCenter: parent.horizontalCenter }
            implicitWidth: contentItem.implicitWidth
            implicitHeight: contentItem.implicitHeight
            focus: true
            focusPolicy: Qt.TabFocus
            Keys.onLeftPressed: window.turn(window.tab - 1)
            Keys.onRightPressed: window.turn(window.tab + 1)

            Accessible.name: window.title

            contentItem: Row {
                spacing: 6

                SettingsTab {
                    text: qsTr("General")
                    symbolName: "gearshape"
                    isCurrent: window.tab === 0
                    isFocused: isCurrent && strip.visualFocus
                    onClicked: window.turn(0)
                }
                SettingsTab {
                    text: qsTr("Thresholds")
                    symbolName: "slider.horizontal.3"
                    isCurrent: window.tab === 1
                    isFocused: isCurrent && strip.visualFocus
                    onClicked: window.turn(1)
                }
                SettingsTab {
                    text: qsTr("Locations")
                    symbolName: "folder"
                    isCurrent: window.tab === 2
                    isFocused: isCurrent && strip.visualFocus
                    onClicked: window.turn(2)
                }
            }
        }
        ScrollArea {
            id: area

            anchors { top: strip.bottom; topMargin: 10; left: parent.left; right: parent.right; bottom: parent.bottom }
            contentHeight: (page.item ? page.item.implicitHeight : 0) + 2 * Theme.windowPaddingAbove

            Loader {
                id: page

                x: Theme.windowPaddingAbove
                y: Theme.windowPaddingAbove
                width: area.width - 2 * x
                sourceComponent: window.tab === 0 ? general : window.tab === 1 ? thresholds : locations
                onLoaded: area.contentY = 0
            }
        }
    }

    Component {
        id: general

        GeneralSettings { models: window.models }
    }
    Component {
        id: thresholds

        ThresholdSettings { settings: window.models.settings }
    }
    Component {
        id: locations

        LocationSettings { settings: window.models.settings }
    }
}
