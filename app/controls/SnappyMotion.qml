// How small things move that answer a hand.
import QtQuick
import Tidewright.Controls

NumberAnimation {
    duration: Theme.snappyDuration
    easing.type: Easing.BezierSpline
    easing.bezierCurve: Theme.springCurve
}
