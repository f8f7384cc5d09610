// Instead of the application's window: why Vesk does not start here.
import QtQuick
import QtQuick.Window
import Vesk

Window {
    id: window

    required property string heading
    required property string message
    property real textScale: 1

    onTextScaleChanged: Theme.textScale = textScale

    title: "Vesk"
    width: minimumWidth
    height: minimumHeight
    minimumWidth: 520
    minimumHeight: 320
    color: Theme.cream
    visible: true

    Shortcut {
        sequences: ["Ctrl+Q", "Ctrl+W"]
        onActivated: Qt.quit()
    }
    InputGuard {}
    MessageDialog {
        anchors.fill: parent
        focus: true
        dim: "transparent"  // there is nothing below it
        title: window.heading
        message: window.message
        acceptText: "Quit"
        onAccepted: Qt.quit()
        onRejected: Qt.quit()
    }
}
