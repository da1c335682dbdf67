// The screen of the destination; a change fades from one to the other.
import QtQuick
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

Item {
    id: stage

    required property ScreenModels models
    readonly property ScreenPage page: fade.item as ScreenPage
    readonly property var components: ({
            overview: overview,
            insights: insights,
            apps: apps,
            history: history,
            android: android,
            xcode: xcode,
            javascript: javascript,
            system: system,
            projects: projects
        })

    CrossFade {
        id: fade
        anchors.fill: parent
        sourceComponent: stage.components[stage.models.app.destinationName]
    }

    Component {
        id: overview
        OverviewView { models: stage.models }
    }
    Component {
        id: insights
        InsightsView { models: stage.models }
    }
    Component {
        id: apps
        AppsAndFilesView { models: stage.models }
    }
    Component {
        id: history
        HistoryView { models: stage.models }
    }
    // Each category has a screen of its own, whose filter, search and focus begin anew.
    Component {
        id: android
        CategoryView { models: stage.models; category: "android" }
    }
    Component {
        id: xcode
        CategoryView { models: stage.models; category: "xcode" }
    }
    Component {
        id: javascript
        CategoryView { models: stage.models; category: "javascript" }
    }
    Component {
        id: system
        CategoryView { models: stage.models; category: "system" }
    }
    Component {
        id: projects
        CategoryView { models: stage.models; category: "projects" }
    }
}
