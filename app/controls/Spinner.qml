// Turns while something is under way.
import QtQuick
import Tidewright.Controls

SpinnerArc {
    id: spinner

    property string label: ""

    implicitWidth: Theme.rowSymbolSize
    implicitHeight: Theme.rowSymbolSize
    color: Theme.accent
    trackColor: Theme.track
    reduceMotion: Theme.reduceMotion

    Accessible.role: Accessible.Indicator
    Accessible.name: spinner.label
    Accessible.ignored: spinner.label === ""
}
