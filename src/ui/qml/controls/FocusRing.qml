// Shows which control has the keyboard focus. Its corners are concentric with those of the item that it surrounds.
import QtQuick
import QtQuick.Templates as T
import Vesk

Rectangle {
    id: ring

    required property T.Control control
    /// The corner radius of the surrounded item.
    property real cornerRadius: parent.height / 2
    /// The gap between that item and the ring's inner edge.
    property real gap: 1

    anchors.fill: parent
    anchors.margins: -(gap + border.width)
    visible: control.visualFocus
    color: "transparent"
    border.color: Theme.ink
    border.width: 2
    radius: cornerRadius + gap + border.width
}
