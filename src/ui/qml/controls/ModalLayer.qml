// A layer over the main screen: a dimmed backdrop and something in front that has the keyboard focus. Return accepts, or
// presses the focused button if there is one; Escape rejects wherever the focus is.
import QtQuick
import Vesk

FocusScope {
    id: layer

    /// Whether no other layer lies over this one.
    property bool topmost: true
    property color dim: Theme.faded(Theme.ink, 0.35)

    signal accepted
    signal rejected
    /// A tap that no item in front has handled.
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
