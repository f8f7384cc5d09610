// A button that stands out: dark words on a fill of one colour, or of two that run into each other.
import QtQuick
import Vesk

PressableButton {
    id: button

    property color from: Theme.accent
    property color to: from
    property real textSize: Theme.body
    /// Of the shadow around it while it can be used.
    property color glow: "transparent"

    standsAlone: true
    horizontalPadding: 20
    verticalPadding: 10
    opacity: available ? 1 : 0.5

    contentItem: Text {
        text: button.text
        color: Theme.inkOnFill
        font.pixelSize: button.textSize
        font.weight: Font.Black
        textFormat: Text.PlainText
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
        scale: button.pressable.scale
        Accessible.ignored: true
    }
    background: Item {
        scale: button.pressable.scale

        SoftShadow {
            objectName: "glow"
            visible: button.available && button.glow.a > 0
            cornerRadius: 20
            blurRadius: 18
            offset: 6
            color: button.glow
        }
        DiagonalGradient {
            anchors.fill: parent
            radius: Math.min(height / 2, 20)
            from: button.from
            to: button.to
        }
        Rectangle {
            anchors.fill: parent
            radius: Math.min(height / 2, 20)
            color: button.down ? Theme.ink : "white"
            opacity: button.down ? 0.1 : button.hovered ? 0.15 : 0
            visible: opacity > 0
        }
        FocusRing {
            control: button
            cornerRadius: Math.min(parent.height / 2, 20)
        }
    }
}
