// An on-off switch in one colour. `toggled` tells of the user's changes, by pointer, key or assistive technology.
import QtQuick
import QtQuick.Templates as T
import Vesk

T.Switch {
    id: control

    property color tint: Theme.accent
    property string name: text
    /// Whether Return flips the switch; in a dialog Return is the default button's unless another button has the focus.
    property bool returnPresses: true
    readonly property SpringValue knob: SpringValue {
        target: control.checked ? 1 : 0
        response: 0.3
        dampingFraction: 0.8
    }

    focusPolicy: Qt.StrongFocus
    implicitWidth: implicitIndicatorWidth + leftPadding + rightPadding
    implicitHeight: implicitIndicatorHeight + topPadding + bottomPadding
    padding: 4

    function flip() {
        if (enabled) {
            toggle();
            toggled();
        }
    }

    Keys.onReturnPressed: event => {
        event.accepted = returnPresses;
        if (returnPresses) {
            flip();
        }
    }
    Keys.onEnterPressed: event => {
        event.accepted = returnPresses;
        if (returnPresses) {
            flip();
        }
    }
    Accessible.role: Accessible.CheckBox
    Accessible.name: name
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.focusable: true
    // What something lies over is not there to be pressed.
    Accessible.ignored: !visible || !enabled
    Accessible.onPressAction: flip()
    Accessible.onToggleAction: flip()

    indicator: Rectangle {
        implicitWidth: 42
        implicitHeight: 26
        x: control.leftPadding
        y: (control.height - height) / 2
        radius: height / 2
        color: control.checked ? control.tint : Qt.darker(Theme.track, 1.1)
        border.width: 1.5
        border.color: control.checked ? Theme.mark(control.tint) : Theme.faded(Theme.softInk, 0.75)

        Rectangle {
            readonly property real travel: parent.width - width - 6
            x: 3 + control.knob.value * travel
            y: 3
            width: 20
            height: 20
            radius: 10
            color: Theme.card
        }
        FocusRing {
            control: control
        }
    }
}
