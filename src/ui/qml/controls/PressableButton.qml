// The base of all buttons: press feedback, keys, and actions by assistive technology. `available` says whether the
// button can be used, regardless of any layer over it.
import QtQuick
import QtQuick.Templates as T
import Vesk

T.AbstractButton {
    id: button

    property bool available: true
    /// Whether the button has no accessible children. If so, its accessible interface is ButtonInterface.
    property bool standsAlone: false
    /// The accessible description: what is spoken after the button's name.
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

    // Called by assistive technology. Takes the focus, as a click would.
    function pressFromOutside() {
        forceActiveFocus();
        press();
    }

    Keys.onReturnPressed: press()
    Keys.onEnterPressed: press()
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.focusable: true
    // In Qt 6.4, QML has no accessible state for this.
    Accessible.description: available ? hint : "Not available now"
    // A button beneath a layer cannot be pressed.
    Accessible.ignored: !visible || (available && !enabled)
    Accessible.onPressAction: pressFromOutside()
}
