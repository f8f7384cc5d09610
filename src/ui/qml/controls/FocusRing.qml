// Shows which control the keyboard is on. Its corners have the same centres as those of what it surrounds.
import QtQuick
import QtQuick.Templates as T
import Vesk

Rectangle {
    id: ring

    required property T.Control control
    /// Of what it surrounds.
    property real cornerRadius: parent.height / 2
    /// Between what it surrounds and itself; its own width lies beyond.
    property real gap: 1

    anchors.fill: parent
    anchors.margins: -(gap + border.width)
    visible: control.visualFocus
    color: "transparent"
    border.color: Theme.ink
    border.width: 2
    radius: cornerRadius + gap + border.width
}
