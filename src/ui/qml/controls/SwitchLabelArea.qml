// Makes a switch's label clickable, as is usual. It fills the label.
import QtQuick
import Vesk

MouseArea {
    required property ToggleSwitch control

    onClicked: control.flip()
}
