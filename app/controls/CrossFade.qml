// Shows one thing at a time. When another component or key comes, the new one is made and fades in
// over the old one, which is destroyed afterwards.
import QtQuick
import Tidewright.Controls

FocusScope {
    id: fade

    property Component sourceComponent
    property string key: ""

    property Loader shownLoader: null
    readonly property Item item: shownLoader ? shownLoader.item : null

    function change() {
        if (shownLoader)
            Qt.callLater(show)
    }
    function show() {
        const former = shownLoader
        const next = former === first ? second : first
        next.stop()
        next.sourceComponent = sourceComponent
        next.z = 1
        shownLoader = next
        next.appear(former !== null)
        if (former)
            former.leave()
    }

    onSourceComponentChanged: change()
    onKeyChanged: change()
    Component.onCompleted: show()

    component Layer: Loader {
        id: layer

        function stop() {
            fading.stop()
            sourceComponent = undefined
        }
        function appear(fades) {
            enabled = true
            focus = true
            opacity = fades && Theme.crossFadeDuration > 0 ? 0 : 1
            fading.to = 1
            if (opacity < 1)
                fading.restart()
        }
        function leave() {
            enabled = false
            z = 0
            if (Theme.crossFadeDuration === 0) {
                sourceComponent = undefined
                return
            }
            fading.to = 0
            fading.restart()
        }

        anchors.fill: parent

        NumberAnimation {
            id: fading

            target: layer
            property: "opacity"
            duration: Theme.crossFadeDuration
            onFinished: {
                if (layer.opacity === 0)
                    layer.sourceComponent = undefined
            }
        }
    }

    Layer { id: first }
    Layer { id: second }
}
