// The foot of the detail sheet: whether the card is ticked, and the way out.
import QtQuick
import QtQuick.Layouts
import Vesk

RowLayout {
    id: footer

    required property bool selected
    required property color tint

    /// The switch was used.
    signal toggled(bool checked)
    signal done

    spacing: 8

    ToggleSwitch {
        objectName: "includeSwitch"
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
        elide: Text.ElideRight
    }
    FilledButton {
        objectName: "doneButton"
        Layout.minimumWidth: 96
        focus: footer.visible
        verticalPadding: 8
        text: "Done"
        returnPresses: false
        onClicked: footer.done()
    }
}
