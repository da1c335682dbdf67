// The main window: sidebar, toolbar and the screen of the destination; the review above them.
import QtQuick
import QtQuick.Window
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

Window {
    id: window

    required property ScreenModels models
    readonly property bool isReviewing: models.session.face !== ""
    readonly property ScreenPage page: stage.page

    title: "Tidewright"
    width: Theme.windowWidth
    height: Theme.windowHeight
    minimumWidth: Theme.windowMinimumWidth
    minimumHeight: Theme.windowMinimumHeight
    color: Theme.window

    // The way back from the system's settings leads through here.
    onActiveChanged: {
        if (active)
            models.app.checkFullDiskAccess();
    }

    Shortcut {
        sequence: "Ctrl+R"
        enabled: !window.models.overview.isScanning
        onActivated: window.models.app.scan()
    }
    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        enabled: window.models.overview.hasSelection && !window.isReviewing
        onActivated: window.models.app.reviewSelection()
    }
    Shortcut {
        sequence: "Ctrl+F"
        enabled: !window.isReviewing
        onActivated: stage.page.focusFilter()
    }

    Shortcut {
        sequence: "Ctrl+,"
        onActivated: window.models.shell.openSettings()
    }
    Connections {
        target: window.models.shell
        function onShowAbout() { about.open() }
    }

    Sidebar {
        id: sidebar
        anchors { left: parent.left; top: parent.top; bottom: parent.bottom }
        models: window.models
    }
    Toolbar {
        id: toolbar
        anchors { left: sidebar.right; top: parent.top; right: parent.right }
        models: window.models
        title: stage.page ? stage.page.title : ""
        tools: stage.page ? stage.page.tools : null
    }
    Stage {
        id: stage
        anchors { left: sidebar.right; top: toolbar.bottom; right: parent.right; bottom: parent.bottom }
        models: window.models
        focus: true
    }

    ReviewSheet {
        models: window.models
    }
    AboutSheet {
        id: about
    }
}
