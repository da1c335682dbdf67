// The ground of a card. Its shadow lies around it, outside of its bounds.
import QtQuick
import Tidewright.Controls

Item {
    id: ground

    property color topColor: Theme.surface
    property color bottomColor: topColor
    property color edgeColor: Theme.surfaceTop // of the light upper edge
    property color outlineColor: Theme.hair
    property real radius: Theme.cardRadius
    property bool hasShadow: true
    property color shadowNear: Theme.shadowNear
    property color shadowFar: Theme.shadowFar

    CardPicture {
        anchors.fill: parent
        anchors.margins: -margin
        margin: {
            if (!ground.hasShadow)
                return 0
            return ground.shadowFar.a > 0 ? Theme.shadowFarBlur + Theme.shadowFarOffset
                                          : Theme.shadowNearBlur + Theme.shadowNearOffset
        }
        topColor: ground.topColor
        bottomColor: ground.bottomColor
        edgeColor: ground.edgeColor
        outlineColor: ground.outlineColor
        radius: ground.radius
        shadowNear: ground.hasShadow ? ground.shadowNear : "transparent"
        shadowFar: ground.hasShadow ? ground.shadowFar : "transparent"
    }
}
