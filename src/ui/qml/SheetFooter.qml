// The foot of the detail sheet: the switch that ticks the card, and the Done button.
import QtQuick
import QtQuick.Layouts
import Vesk

RowLayout {
    id: footer

    objectName: "sheetFooter"

    required property bool selected
    required property color tint

    /// The user has flipped the switch.
    signal toggled(bool checked)
    signal done

    spacing: 8

    ToggleSwitch {
        id: includeSwitch

        objectName: "includeSwitch"
        Layout.leftMargin: -padding
        name: "Include in clean"
        tint: footer.tint
        checked: footer.selected
        returnPresses: false
        onToggled: footer.toggled(checked)
    }
    Label {
        Layout.fillWidth: true
        text: "Include in clean"
        announcedByParent: true
        weight: Font.Bold
        wrapMode: Text.Wrap

        SwitchLabelArea {
            anchors.fill: parent
            control: includeSwitch
        }
    }
    FilledButton {
        objectName: "doneButton"
        Layout.minimumWidth: 96
        focus: footer.visible
        verticalPadding: 8
        text: "Done"
        onClicked: footer.done()
    }
}
