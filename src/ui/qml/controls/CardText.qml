// The words of a card's row: its title with a chip after the last word, and its summary. (Not a layout: nested ones
// lose count of wrapped lines in Qt 6.4.)
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
        id: head

        // Of the title's last line.
        property real lastTop: 0
        property real lastWidth: 0
        property real lastHeight: 0
        readonly property bool fits: lastWidth + Theme.gap + chipText.width <= width

        width: lines.width
        height: Math.max(titleText.height, chipText.y + chipText.height)

        Label {
            id: titleText

            objectName: "titleText"
            width: parent.width
            text: lines.title
            weight: Font.Bold
            wrapMode: Text.Wrap
            elide: Text.ElideRight
            maximumLineCount: 4
            clip: true
            announcedByParent: true
            // Lines come in their order, so the last one stays.
            onLineLaidOut: line => {
                head.lastTop = line.y;
                head.lastWidth = line.implicitWidth;
                head.lastHeight = line.height;
            }
        }
        Chip {
            id: chipText

            objectName: "chip"
            announcedByParent: true
            x: head.fits ? Math.ceil(head.lastWidth) + (head.lastWidth > 0 ? Theme.gap : 0) : 0
            y: head.fits ? Math.max(0, head.lastTop + (head.lastHeight - height) / 2) : head.lastTop + head.lastHeight + 2
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
