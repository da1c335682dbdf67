// Names the rows below it.
import QtQuick
import Tidewright.Controls
import Tidewright.Screens

Words {
    width: ListView.view ? ListView.view.width : implicitWidth
    leftPadding: 14
    rightPadding: 14
    topPadding: 10
    bottomPadding: 4
    font: Theme.semibold(Theme.subheadline)
    color: Theme.text2
    Accessible.role: Accessible.Heading
}
