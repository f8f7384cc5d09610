// The words of a card's row: its title with a chip beside it, and its summary. (Not a layout: nested ones lose count of
// wrapped lines in Qt 6.4.)
import QtQuick
import Vesk

Column {
    id: lines

    required property string title
    required property string summary
    required property string chip
    required property color tint

    spacing: 2

    Item {
        width: lines.width
        height: Math.max(titleText.height, chipText.height)

        Label {
            id: titleText

            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(Math.ceil(implicitWidth), parent.width - chipText.width - Theme.gap)
            text: lines.title
            weight: Font.Bold
            wrapMode: Text.Wrap
            elide: Text.ElideRight
            maximumLineCount: 4
            clip: true
            announcedByParent: true
        }
        Chip {
            id: chipText

            objectName: "chip"
            announcedByParent: true
            anchors.left: titleText.right
            anchors.leftMargin: Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            text: lines.chip
            tint: lines.tint
        }
    }
    Label {
        width: lines.width
        text: lines.summary
        color: Theme.softInk
        font.pixelSize: Theme.callout
        wrapMode: Text.Wrap
        elide: Text.ElideRight
        // Large text in a small window needs more of them to say as much.
        maximumLineCount: Theme.textScale > 1.25 ? 4 : 2
        announcedByParent: true
    }
}
