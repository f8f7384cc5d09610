// A narrow scroll bar.
import QtQuick
import QtQuick.Templates as T
import Vesk

T.ScrollBar {
    id: bar

    padding: 2
    implicitWidth: 10
    implicitHeight: 10
    visible: size < 1
    minimumSize: 0.08
    Accessible.ignored: true

    contentItem: Rectangle {
        implicitWidth: 6
        implicitHeight: 6
        radius: 3
        color: Theme.softInk
        opacity: bar.pressed ? 0.7 : bar.hovered || bar.active ? 0.45 : 0.2
    }
}
