// What all of the window's buttons share: press feedback, keys, and actions from assistive technology. `available`
// says whether the button can be used as far as it is itself concerned, whatever lies over it.
import QtQuick
import QtQuick.Templates as T
import Vesk

T.AbstractButton {
    id: button

    property bool available: true
    /// What assistive technology says after the button's name.
    property string hint: ""
    /// Whether Return presses the button; in a dialog Return is the default button's.
    property bool returnPresses: true
    readonly property PressableStyle pressable: PressableStyle {
        button: button
    }

    enabled: available
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    implicitWidth: Math.ceil(implicitContentWidth) + leftPadding + rightPadding
    implicitHeight: Math.ceil(implicitContentHeight) + topPadding + bottomPadding

    function press() {
        if (enabled) {
            clicked();
        }
    }

    Keys.onReturnPressed: event => {
        event.accepted = returnPresses;
        if (returnPresses) {
            press();
        }
    }
    Keys.onEnterPressed: event => {
        event.accepted = returnPresses;
        if (returnPresses) {
            press();
        }
    }
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.focusable: true
    // There is no state for it in Qt 6.4.
    Accessible.description: available ? hint : "Not available now"
    // What something lies over is not there to be pressed.
    Accessible.ignored: !visible || (available && !enabled)
    Accessible.onPressAction: press()
}
