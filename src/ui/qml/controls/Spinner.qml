// The busy indicator: a short stroke that goes round a circle every 1.3 seconds. (Repainted at each angle: rotating the
// item looks jagged without a GPU.)
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
    visible: !Motion.reduced
    Accessible.ignored: true

    Component.onCompleted: spin = true

    NumberAnimation {
        target: spinner
        property: "turn"
        running: spinner.spin && spinner.visible
        from: 0
        to: 360
        duration: 1300
        loops: Animation.Infinite
    }
}
