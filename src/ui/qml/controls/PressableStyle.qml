// The press feedback of a button: its `scale` springs to 0.95 while the button is pressed and back to 1.
import QtQuick
import QtQuick.Templates as T
import Vesk

QtObject {
    id: style

    required property T.AbstractButton button
    readonly property real scale: spring.value

    readonly property SpringValue spring: SpringValue {
        target: style.button.down ? 0.95 : 1
        response: 0.3
        dampingFraction: 0.5
    }
}
