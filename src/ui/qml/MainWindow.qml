// The application's one window.
import QtQuick
import QtQuick.Window
import Vesk

Window {
    id: window

    required property Store store
    property real titleBarInset: 0
    property real textScale: 1
    /// What the display has for windows, in points.
    property size available: Qt.size(1100, 740)

    onTextScaleChanged: Theme.textScale = textScale

    title: "Vesk"
    width: Math.max(minimumWidth, Math.min(1100, available.width))
    height: Math.max(minimumHeight, Math.min(740, available.height))
    // On a smaller display the content keeps its own least size, and scrolls.
    minimumWidth: Math.min(980, available.width)
    minimumHeight: Math.min(660, available.height)
    color: Theme.cream
    visible: true

    Shortcut {
        sequence: "Ctrl+Q"
        autoRepeat: false
        onActivated: Qt.quit()
    }
    Shortcut {
        sequence: "Ctrl+W"
        autoRepeat: false
        onActivated: window.close()
    }
    ContentView {
        anchors.fill: parent
        focus: true
        store: window.store
        titleBarInset: window.titleBarInset
    }
}
