// A list of what was found, or what stands in its place.
import QtQuick
import Tidewright.Controls
import Tidewright.Screens

FocusScope {
    id: found

    required property string name
    required property var empty ///< an EmptyText
    property alias model: list.model
    property alias delegate: list.delegate

    Loader {
        anchors.fill: parent
        active: list.count === 0
        sourceComponent: EmptyStateView {
            title: found.empty.title
            symbolName: found.empty.symbolName
            message: found.empty.message
        }
    }
    ListArea {
        id: list
        anchors.fill: parent
        focus: true
        activeFocusOnTab: true
        Accessible.role: Accessible.List
        Accessible.name: found.name
    }
}
