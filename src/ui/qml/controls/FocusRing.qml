// Shows which control the keyboard is on.
import QtQuick
import QtQuick.Templates as T
import Vesk

Rectangle {
    required property T.Control control

    anchors.fill: parent
    anchors.margins: -3
    visible: control.visualFocus
    color: "transparent"
    border.color: Theme.ink
    border.width: 2
    radius: Math.min(height / 2, 15)
}
