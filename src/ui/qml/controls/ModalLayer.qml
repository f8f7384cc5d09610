// What is laid over the main screen: a dimmed backdrop with something in front that has the keyboard to itself. Return
// accepts unless a button inside has the focus, which it then presses; Escape rejects wherever the focus is inside.
import QtQuick
import Vesk

FocusScope {
    id: layer

    /// Whether no other layer lies over this one.
    property bool topmost: true
    property color dim: Theme.faded(Theme.ink, 0.35)

    signal accepted
    signal rejected
    /// A press and release anywhere that nothing in front takes.
    signal tapped

    anchors.fill: parent
    focus: true
    enabled: topmost
    onTopmostChanged: {
        if (topmost) {
            forceActiveFocus();
        }
    }
    Component.onCompleted: {
        if (topmost) {
            forceActiveFocus();
        }
    }
    Keys.onReturnPressed: accepted()
    Keys.onEnterPressed: accepted()
    Keys.onEscapePressed: rejected()

    Rectangle {
        anchors.fill: parent
        color: layer.dim
    }
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onClicked: layer.tapped()
        onWheel: event => event.accepted = true
    }
}
