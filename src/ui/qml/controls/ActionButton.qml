// A button of words in one colour, without a frame until the pointer or the keyboard is on it.
import QtQuick
import Vesk

PressableButton {
    id: button

    property color color: Theme.accent
    property real textSize: Theme.callout
    /// Whether its words stand alone until the pointer or the keyboard is on it.
    property bool quiet: false

    standsAlone: true
    horizontalPadding: 12
    verticalPadding: 8
    opacity: available ? 1 : 0.5

    contentItem: Text {
        text: button.text
        color: Theme.words(button.color)
        font.pixelSize: button.textSize
        font.weight: Font.Bold
        textFormat: Text.PlainText
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        scale: button.pressable.scale
        Accessible.ignored: true
    }
    background: Rectangle {
        radius: height / 2
        color: Theme.faded(button.color, button.down ? 0.22 : button.hovered ? 0.16 : button.quiet ? 0 : 0.1)
        scale: button.pressable.scale

        FocusRing {
            control: button
        }
    }
}
