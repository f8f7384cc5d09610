// The busy indicator: a short stroke that runs round a circle without end, once in 1.3 seconds. (It is
// painted anew for each place: turning the item itself looks jagged without a graphics processor.)
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
