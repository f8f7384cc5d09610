// The busy indicator: a short stroke that runs round a circle without end, once in 1.3 seconds.
import QtQuick
import Vesk

Arc {
    id: spinner

    property bool spin: false

    from: 0
    to: 0.06
    lineWidth: 8
    roundCaps: true
    color: Qt.rgba(1, 1, 1, 0.9)
    rotation: -90
    visible: !Motion.reduced
    Accessible.ignored: true

    Component.onCompleted: spin = true

    NumberAnimation {
        target: spinner
        property: "rotation"
        running: spinner.spin && spinner.visible
        from: -90
        to: 270
        duration: 1300
        loops: Animation.Infinite
    }
}
