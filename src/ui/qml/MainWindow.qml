// The application's one window.
import QtQuick
import QtQuick.Window
import Vesk

Window {
    id: window

    required property Store store
    property real titleBarInset: 0
    property real textScale: 1

    onTextScaleChanged: Theme.textScale = textScale

    title: "Vesk"
    width: 1100
    height: 740
    minimumWidth: 980
    minimumHeight: 660
    color: Theme.cream
    visible: true

    ContentView {
        anchors.fill: parent
        focus: true
        store: window.store
        titleBarInset: window.titleBarInset
    }
}
