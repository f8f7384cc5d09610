// Makes the words beside a switch a part of it, as they are everywhere. It fills those words.
import QtQuick
import Vesk

MouseArea {
    required property ToggleSwitch control

    onClicked: control.flip()
}
