// What all of the window's buttons share: press feedback, keys, and actions from assistive technology. `available`
// says whether the button can be used as far as it is itself concerned, whatever lies over it.
import QtQuick
import QtQuick.Templates as T
import Vesk

T.AbstractButton {
    id: button

    property bool available: true
    /// Whether there is nothing accessible inside. Assistive technology is told of such a button as ButtonInterface does.
    property bool standsAlone: false
    /// What assistive technology says after the button's name.
    property string hint: ""
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

    // By assistive technology. A click would bring the focus along, too.
    function pressFromOutside() {
        forceActiveFocus();
        press();
    }

    Keys.onReturnPressed: press()
    Keys.onEnterPressed: press()
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.focusable: true
    // There is no state for it in QML of Qt 6.4.
    Accessible.description: available ? hint : "Not available now"
    // What something lies over is not there to be pressed.
    Accessible.ignored: !visible || (available && !enabled)
    Accessible.onPressAction: pressFromOutside()
}
