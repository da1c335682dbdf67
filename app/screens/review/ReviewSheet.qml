// The one gate between a selection and anything being touched: review, cleaning, results.
import QtQuick
import Tidewright.Controls
import Tidewright.Screens
import Tidewright.State

Sheet {
    id: sheet

    required property ScreenModels models
    readonly property string face: models.session.face

    title: face === "cleaning" ? qsTr("Cleaning") : face === "finished" ? models.session.results.headline : qsTr("Review cleanup")
    width: 620
    height: 600
    visible: face !== ""
    dismissible: face === "review" || face === "finished"
    onDismissed: models.app.closeSession()

    CrossFade {
        anchors.fill: parent
        focus: true
        sourceComponent: sheet.face === "review" ? review : sheet.face === "cleaning" ? cleaning : sheet.face === "finished" ? results : null
    }
    Component {
        id: review
        ReviewFace { models: sheet.models }
    }
    Component {
        id: cleaning
        CleaningFace { models: sheet.models }
    }
    Component {
        id: results
        ResultsView { models: sheet.models }
    }
}
