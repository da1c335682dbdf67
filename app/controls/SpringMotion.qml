// How things move: a critically damped spring. At once where motion is reduced.
import QtQuick
import Tidewright.Controls

NumberAnimation {
    duration: Theme.springDuration
    easing.type: Easing.BezierSpline
    easing.bezierCurve: Theme.springCurve
}
