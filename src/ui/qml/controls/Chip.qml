// A small label on a capsule.
import QtQuick
import Vesk

Rectangle {
    id: chip

    required property string text
    required property color tint
    property bool announcedByParent: false

    implicitWidth: Math.ceil(words.implicitWidth) + 16
    implicitHeight: Math.ceil(words.implicitHeight) + 4
    radius: height / 2
    color: Theme.faded(tint, 0.28)

    Label {
        id: words

        announcedByParent: chip.announcedByParent
        anchors.centerIn: parent
        text: chip.text
        font.pixelSize: Theme.chip
        weight: Font.DemiBold
    }
}
