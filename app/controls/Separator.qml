import QtQuick
import Tidewright.Controls

Rectangle {
    property int orientation: Qt.Horizontal

    implicitWidth: 1
    implicitHeight: 1
    color: Theme.hair
}
